#pragma once

#include <QObject>

class TodayViewModel;

// Tells the state object when the machine resumes from sleep, as logind reports it on the
// system bus.
class SleepWatcher : public QObject {
    Q_OBJECT

public:
    // Whether logind can be heard at all; without it the state object judges by its clocks.
    static bool available();

    explicit SleepWatcher(TodayViewModel &state, QObject *parent = nullptr);

private slots:
    void prepareForSleep(bool sleeping);

private:
    TodayViewModel &m_state;
};
