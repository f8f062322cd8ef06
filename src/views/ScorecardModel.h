#pragma once

#include "PopoverTypes.h"
#include "ScoreTableModel.h"

#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>
#include <QUrl>

class PopoverController;
struct ZelMatch;
struct ZelScorecard;

// The scorecard of one opened row, for QML: its state, the innings switch, and the shown
// innings' total line and tables. The innings shown is the row's pick, else the rule's (the one
// in progress while live), so a live card moves on with the match until the user picks one. The
// match is named by its identifier in decimal, so that identifiers beyond 2^53 survive QML's
// numbers.
class ScorecardModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(PopoverController *controller READ controller WRITE setController NOTIFY
                   controllerChanged REQUIRED)
    Q_PROPERTY(QString matchKey READ matchKey WRITE setMatchKey NOTIFY matchKeyChanged REQUIRED)
    Q_PROPERTY(
        int chosenInnings READ chosenInnings WRITE setChosenInnings NOTIFY chosenInningsChanged)
    Q_PROPERTY(int selectedInnings READ selectedInnings NOTIFY selectedInningsChanged)
    Q_PROPERTY(Popover::Card state READ state NOTIFY changed)
    Q_PROPERTY(QString error READ error NOTIFY changed)
    Q_PROPERTY(QStringList inningsLabels READ inningsLabels NOTIFY changed)
    Q_PROPERTY(bool yetToBat READ isYetToBat NOTIFY changed)
    Q_PROPERTY(QString yetToBatName READ yetToBatName NOTIFY changed)
    Q_PROPERTY(QUrl yetToBatLogo READ yetToBatLogo NOTIFY changed)
    Q_PROPERTY(QString score READ score NOTIFY changed)
    Q_PROPERTY(QString overs READ overs NOTIFY changed)
    Q_PROPERTY(ScoreTableModel *batting READ batting CONSTANT)
    Q_PROPERTY(ScoreTableModel *bowling READ bowling CONSTANT)

public:
    using QObject::QObject;

    PopoverController *controller() const { return m_controller; }
    void setController(PopoverController *controller);
    QString matchKey() const { return m_matchKey; }
    void setMatchKey(const QString &key);
    int chosenInnings() const { return m_chosenInnings; }
    // -1 for none.
    void setChosenInnings(int innings);
    int selectedInnings() const { return m_selectedInnings; }

    Popover::Card state() const { return m_state; }
    QString error() const { return m_error; }
    QStringList inningsLabels() const { return m_inningsLabels; }
    bool isYetToBat() const { return m_yetToBat; }
    QString yetToBatName() const { return m_yetToBatName; }
    QUrl yetToBatLogo() const { return m_yetToBatLogo; }
    QString score() const { return m_score; }
    QString overs() const { return m_overs; }
    ScoreTableModel *batting() { return &m_batting; }
    ScoreTableModel *bowling() { return &m_bowling; }

signals:
    void controllerChanged();
    void matchKeyChanged();
    void chosenInningsChanged();
    void selectedInningsChanged();
    void changed();

private:
    void update();
    void showInnings(const ZelMatch &match, const ZelScorecard &card);

    QPointer<PopoverController> m_controller;
    QMetaObject::Connection m_connection;
    QString m_matchKey;
    int m_chosenInnings = -1;
    int m_selectedInnings = 0;
    Popover::Card m_state = Popover::Card::None;
    QString m_error;
    QStringList m_inningsLabels;
    bool m_yetToBat = false;
    QString m_yetToBatName;
    QUrl m_yetToBatLogo;
    QString m_score;
    QString m_overs;
    ScoreTableModel m_batting;
    ScoreTableModel m_bowling;
};
