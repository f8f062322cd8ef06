#include "TrayIconStatusItem.h"

#include "StatusTitle.h"

#include <QCursor>

TrayIconStatusItem::TrayIconStatusItem(QObject *parent)
    : StatusItem(parent)
{
    m_icon.setIcon(StatusIconArt::iconFor(m_state));
    m_icon.setToolTip(StatusTitle::bat);
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

void TrayIconStatusItem::setTitle(const QString &title)
{
    m_icon.setToolTip(title);
    const StatusIconArt::State state = StatusIconArt::stateOf(title);
    if (state != m_state) {
        m_state = state;
        m_icon.setIcon(StatusIconArt::iconFor(state));
    }
}
