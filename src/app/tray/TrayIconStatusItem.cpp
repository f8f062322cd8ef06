#include "TrayIconStatusItem.h"

#include "StatusTitle.h"

#include <QCursor>
#include <QTextDocument>

TrayIconStatusItem::TrayIconStatusItem(QObject *parent)
    : StatusItem(parent)
{
    m_title = {StatusTitle::bat};
    show();
    connect(&m_icon, &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::Context)
                    emit rightClicked(QCursor::pos());
                // A quick second click arrives as a double click; it still means "toggle".
                else if (reason == QSystemTrayIcon::Trigger ||
                         reason == QSystemTrayIcon::DoubleClick)
                    emit leftClicked(m_icon.geometry());
            });
    m_icon.show();
}

void TrayIconStatusItem::setTitle(const StatusTitle::Line &title)
{
    m_title = title;
    show();
}

void TrayIconStatusItem::setOfflineNote(const QString &note)
{
    m_offlineNote = note;
    show();
}

void TrayIconStatusItem::show()
{
    const QString words = StatusTitle::inWords(m_title, m_offlineNote);
    const QString tip = words.isEmpty() ? m_title.text : m_title.text + u'\n' + words;
    // As rich text that says exactly the plain text, so that no markup in it is ever drawn.
    m_icon.setToolTip(Qt::convertFromPlainText(tip, Qt::WhiteSpaceNoWrap));
    const StatusTitle::State state = m_title.state;
    const bool offline = !m_offlineNote.isEmpty();
    if (m_icon.icon().isNull() || state != m_state || offline != m_offline) {
        m_state = state;
        m_offline = offline;
        m_icon.setIcon(StatusIconArt::iconFor(state, offline));
    }
}
