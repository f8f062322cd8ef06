#pragma once

#include <QString>
#include <QStringList>

// Starting at login: the user's own autostart entry, made from the template the package
// installs. Off removes it, or, when the system starts the app for everyone, hides it for
// this user.
class LoginItem {
public:
    static inline const QString fileName = QStringLiteral("example.zel.MenuBar.desktop");

    // userFolder holds the user's entry; systemFolders are searched for one for everyone.
    LoginItem(QString userFolder, QStringList systemFolders, QString program);
    // The XDG folders, and this program.
    static LoginItem forThisUser();

    bool isOn() const;
    // False when the entry could not be written or removed.
    bool set(bool on) const;

private:
    static bool hidden(const QString &path);
    QString systemEntry() const;

    QString m_userFolder;
    QStringList m_systemFolders;
    QString m_program;
};
