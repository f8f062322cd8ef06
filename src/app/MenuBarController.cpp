#include "MenuBarController.h"

#include "DisplayText.h"
#include "ImageCache.h"

#include <QApplication>
#include <QDesktopServices>
#include <QLoggingCategory>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTextDocument>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace {
Q_LOGGING_CATEGORY(lcTiming, "zel.timing", QtWarningMsg)

constexpr std::chrono::seconds trimDelay{2};

TodayViewModel::Setup stateSetup(const QString &serviceURL)
{
    TodayViewModel::Setup setup;
    setup.serviceURL = serviceURL;
    setup.inferSleepFromClock = !SleepWatcher::available();
    return setup;
}

// The buttons of an earlier state go, the added ones too: setStandardButtons keeps those.
void removeButtons(QMessageBox &dialog)
{
    for (QAbstractButton *button : dialog.buttons()) {
        dialog.removeButton(button);
        button->deleteLater();
    }
}
} // namespace

MenuBarController::MenuBarController(Setup setup, UpdateChecker &updater, QObject *parent)
    : QObject(parent)
    , m_setup(std::move(setup))
    , m_updater(updater)
    , m_preferences(m_setup.preferencesPath)
    , m_loginItem(LoginItem::forThisUser())
    , m_vm(stateSetup(m_setup.serviceURL))
    , m_popoverController(
          m_vm, m_setup.serviceURL, &m_preferences,
          {[this] { return m_loginItem.isOn(); }, [this](bool on) { return m_loginItem.set(on); }})
    , m_alerts(m_vm, m_preferences, m_setup.serviceURL, ImageCache::shared())
    , m_sleepWatcher(m_vm)
    , m_popover(m_popoverController)
    , m_statusItem([this] { return exportedMenuEntries(); })
{
    connect(&m_statusItem, &StatusItem::leftClicked, this, &MenuBarController::togglePopover);
    connect(&m_statusItem, &StatusItem::rightClicked, this, &MenuBarController::showContextMenu);
    // The host's own menu opens over the popover, which would otherwise stay under it.
    connect(&m_statusItem, &StatusItem::menuOpened, &m_popover, &QWindow::hide);
    connect(&m_vm, &TodayViewModel::statusBarTitleChanged, this,
            [this] { m_statusItem.setTitle(m_vm.statusBarTitle()); });
    m_statusItem.setTitle(m_vm.statusBarTitle());
    connect(&m_vm, &TodayViewModel::offlineChanged, this, &MenuBarController::showOfflineNote);
    connect(&m_vm, &TodayViewModel::lastUpdatedChanged, this, &MenuBarController::showOfflineNote);
    connect(&m_updater, &UpdateChecker::checked, this, &MenuBarController::showUpdateResult);
    connect(&m_updater, &UpdateChecker::newerVersionFound, this,
            &MenuBarController::announceNewerVersion);
    connect(&m_updateNotifier, &DesktopNotifier::defaultActionInvoked, this, [this] {
        if (!m_announcedPage.isEmpty())
            QDesktopServices::openUrl(m_announcedPage);
        else
            checkForUpdates();
    });
    // A right click on the status item while the popover holds the pointer reaches the
    // popover: it closes, and the menu opens in the same click.
    connect(&m_popover, &PopoverWindow::statusItemRightClicked, this,
            &MenuBarController::showContextMenu);
    m_vm.setFavouriteTeam(m_preferences.favouriteTeamID());
    connect(&m_preferences, &Preferences::favouriteChanged, this,
            [this] { m_vm.setFavouriteTeam(m_preferences.favouriteTeamID()); });
    connect(&m_alerts, &MatchAlerts::openRequested, this, &MenuBarController::showToday);
    connect(&m_popover, &PopoverWindow::shownAfter, this, [](qint64 nanoseconds) {
        qCDebug(lcTiming, "popover first frame %.2f ms after the click", nanoseconds / 1e6);
    });
    trimAfterActivity();
}

void MenuBarController::trimAfterActivity()
{
#ifdef __GLIBC__
    // glibc keeps what a load or the popover freed until it is asked to give it back; the app
    // then idles for minutes or hours.
    m_trim.setSingleShot(true);
    m_trim.setInterval(trimDelay);
    connect(&m_trim, &QTimer::timeout, this, [] { malloc_trim(0); });
    // The timer receives: the popover hides as the members go, and the timer goes first.
    const auto settle = qOverload<>(&QTimer::start);
    connect(&m_popover, &QWindow::visibleChanged, &m_trim, settle);
    connect(&m_vm, &TodayViewModel::isLoadingChanged, &m_trim, settle);
    connect(&m_vm, &TodayViewModel::isLoadingFixturesChanged, &m_trim, settle);
    connect(&m_vm, &TodayViewModel::isLoadingResultsChanged, &m_trim, settle);
    connect(&m_vm, &TodayViewModel::loadingScorecardsChanged, &m_trim, settle);
#endif
}

void MenuBarController::showOfflineNote()
{
    m_statusItem.setOfflineNote(
        m_vm.isOffline()
            ? TodayPresenter::updatedLabel(m_vm.lastUpdated(), true, QTimeZone::systemTimeZone())
            : QString());
}

void MenuBarController::togglePopover(const QRect &anchor)
{
    m_popover.toggle(anchor);
}

void MenuBarController::showPopover()
{
    if (!m_popover.isVisible())
        m_popover.showBelow(m_statusItem.anchor());
    m_popover.requestActivate();
}

void MenuBarController::showToday()
{
    m_popoverController.setSettingsOpen(false);
    m_popoverController.setActiveTab(Popover::Tab::Today);
    showPopover();
}

void MenuBarController::showContextMenu(const QPoint &at)
{
    m_popover.hide();
    QMenu *menu = MenuEntry::createMenu(contextMenuEntries());
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(at);
}

QString MenuBarController::versionLabel(const QString &version)
{
    return tr("Zel Menu Bar v%1").arg(version.isEmpty() ? QStringLiteral("?") : version);
}

QList<MenuEntry> MenuBarController::contextMenuEntries()
{
    return {
        {versionLabel(m_setup.version), false, {}, {}},
        MenuEntry::separator(),
        {tr("Check for Updates…"), true, {}, [this] { checkForUpdates(); }},
        MenuEntry::separator(),
        {tr("Feedback / Report a Bug"), true, {}, [this] { openFeedback(); }},
        {tr("♥ Support Me"), true, {}, [this] { openDonate(); }},
        MenuEntry::separator(),
        {tr("Quit Zel Menu Bar"), true, QKeySequence(Qt::CTRL | Qt::Key_Q), [this] { quitApp(); }},
    };
}

QList<MenuEntry> MenuBarController::exportedMenuEntries()
{
    QList<MenuEntry> entries{{tr("Show Scores"), true, {}, [this] { showPopover(); }}};
    entries.append(contextMenuEntries());
    return entries;
}

QUrl MenuBarController::pageURL(const QString &origin, const QString &path)
{
    const QUrl url(origin + path, QUrl::StrictMode);
    return url.isValid() && !url.host().isEmpty() ? url : QUrl();
}

void MenuBarController::openFeedback()
{
    if (const QUrl url = pageURL(m_setup.websiteURL, QStringLiteral("/zel/?feedback=1"));
        !url.isEmpty())
        QDesktopServices::openUrl(url);
}

void MenuBarController::openDonate()
{
    if (const QUrl url = pageURL(m_setup.websiteURL, QStringLiteral("/zel/#donate"));
        !url.isEmpty())
        QDesktopServices::openUrl(url);
}

void MenuBarController::quitApp()
{
    QCoreApplication::quit();
}

void MenuBarController::checkForUpdates()
{
    if (!m_updateDialog) {
        m_updateDialog = new QMessageBox(QMessageBox::Information, tr("Software Update"), {},
                                         QMessageBox::NoButton);
        m_updateDialog->setAttribute(Qt::WA_DeleteOnClose);
    }
    m_updateDialog->setIconPixmap(QApplication::windowIcon().pixmap(64));
    m_updateDialog->setText(tr("Checking for updates…"));
    m_updateDialog->setInformativeText({});
    removeButtons(*m_updateDialog);
    m_updateDialog->setStandardButtons(QMessageBox::Cancel);
    m_updateDialog->show();
    m_updateDialog->raise();
    m_updateDialog->activateWindow();
    m_updater.check();
}

QString MenuBarController::updateDetail(const UpdateCheck &result, const QString &version)
{
    QString detail;
    switch (result.outcome) {
    case UpdateCheck::UpToDate:
        detail = tr("Zel Menu Bar %1 is currently the newest version available.").arg(version);
        break;
    case UpdateCheck::NewerVersion:
        detail = tr("Zel Menu Bar %1 is now available — you have %2.")
                     .arg(boundedForDisplay(result.version, 32), version);
        break;
    case UpdateCheck::Failed:
        detail = tr("An error occurred in retrieving update information: %1")
                     .arg(boundedForDisplay(result.error, 200));
        break;
    }
    // The dialog guesses the format of this text; as rich text that says exactly the plain text,
    // no markup from the feed is ever drawn.
    return Qt::convertFromPlainText(detail, Qt::WhiteSpaceNormal);
}

void MenuBarController::announceNewerVersion(const UpdateCheck &result)
{
    // A desktop notification takes no focus; its click opens the page, or the dialog.
    m_announcedPage = result.page;
    m_updateNotifier.notify(tr("A new version of Zel Menu Bar is available!"),
                            tr("Zel Menu Bar %1 is now available — you have %2.")
                                .arg(boundedForDisplay(result.version, 32), m_setup.version));
}

void MenuBarController::showUpdateResult(const UpdateCheck &result)
{
    // The dialog reports the check the user asked for; scheduled ones are announced apart.
    if (!m_updateDialog)
        return;
    QMessageBox &dialog = *m_updateDialog;
    removeButtons(dialog);
    dialog.setInformativeText(updateDetail(result, m_setup.version));
    switch (result.outcome) {
    case UpdateCheck::UpToDate:
        dialog.setText(tr("You’re up to date!"));
        dialog.setStandardButtons(QMessageBox::Ok);
        break;
    case UpdateCheck::NewerVersion: {
        dialog.setText(tr("A new version of Zel Menu Bar is available!"));
        if (!result.page.isEmpty()) {
            QPushButton *open = dialog.addButton(tr("Open Download Page"), QMessageBox::AcceptRole);
            const QUrl page = result.page;
            connect(open, &QPushButton::clicked, this, [page] { QDesktopServices::openUrl(page); });
        }
        dialog.addButton(tr("Later"), QMessageBox::RejectRole);
        break;
    }
    case UpdateCheck::Failed:
        dialog.setIcon(QMessageBox::Warning);
        dialog.setText(tr("Update Error!"));
        dialog.setStandardButtons(QMessageBox::Ok);
        break;
    }
}
