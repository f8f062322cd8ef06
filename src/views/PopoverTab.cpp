#include "PopoverTab.h"

#include "TodayPresenter.h"

PopoverTab::PopoverTab(Popover::Tab tab, MatchListModel &model, QObject *parent)
    : QObject(parent)
    , m_tab(tab)
    , m_model(model)
{
}

QString PopoverTab::label() const
{
    return TodayPresenter::label(m_tab);
}

void PopoverTab::show(bool loading, const QString &error, bool listEmpty)
{
    const Popover::Content content = TodayPresenter::content(loading, error, listEmpty);
    QString message;
    switch (content) {
    case Popover::Content::Loading:
        message = TodayPresenter::loadingText(m_tab);
        break;
    case Popover::Content::Error:
        message = TodayPresenter::errorText(error);
        break;
    case Popover::Content::Empty:
        message = TodayPresenter::emptyText(m_tab);
        break;
    case Popover::Content::List:
        break;
    }
    if (content == m_content && message == m_message)
        return;
    m_content = content;
    m_message = std::move(message);
    emit changed();
}
