#pragma once

#include <QString>
#include <string_view>

// The location of a JSON value within a document, for error messages. Segments live on the
// caller's stack and are only turned into text when a decode fails.
class KeyPath {
public:
    KeyPath() = default;
    KeyPath(const KeyPath &parent, std::string_view key)
        : m_parent(&parent)
        , m_key(key)
    {
    }
    KeyPath(const KeyPath &parent, qsizetype index)
        : m_parent(&parent)
        , m_index(index)
    {
    }

    QString toString() const;

private:
    const KeyPath *m_parent = nullptr;
    std::string_view m_key;
    qsizetype m_index = -1;
};
