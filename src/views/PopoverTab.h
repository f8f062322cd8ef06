#pragma once

#include "MatchListModel.h"
#include "PopoverTypes.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

// One tab of the popover as QML sees it: its label, its list, and what it shows now with the
// message that goes with it.
class PopoverTab : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the popover controller")
    Q_PROPERTY(Popover::Tab tab READ tab CONSTANT)
    Q_PROPERTY(QString label READ label CONSTANT)
    Q_PROPERTY(MatchListModel *model READ model CONSTANT)
    Q_PROPERTY(Popover::Content content READ content NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)

public:
    PopoverTab(Popover::Tab tab, MatchListModel &model, QObject *parent = nullptr);

    Popover::Tab tab() const { return m_tab; }
    QString label() const;
    MatchListModel *model() const { return &m_model; }
    Popover::Content content() const { return m_content; }
    const QString &message() const { return m_message; }

    // From the tab's loading flag, error and list.
    void show(bool loading, const QString &error, bool listEmpty);

signals:
    void changed();

private:
    const Popover::Tab m_tab;
    MatchListModel &m_model;
    Popover::Content m_content = Popover::Content::Empty;
    QString m_message;
};
