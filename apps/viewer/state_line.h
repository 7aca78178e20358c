#pragma once

// The line above the card that says what the window does, or what happened and what to do. Its
// height is always the same: what is below it never moves.

#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>

#include "apps/card_view/state_icon.h"

namespace viewer
{

struct State {
    StateKind kind = StateKind::WAITING;
    QString headline;
    QString line = {};    ///< what to do, or what to look at
    QString details = {}; ///< cause and code, on request; empty: there are none
    // In the place of those above while the holder's data is covered; empty: they stay.
    QString coveredHeadline = {};
    QString coveredLine = {};
};

/** As it is said while the holder's data is covered. */
State coveredState(const State &state);

class StateLine : public QFrame
{
    Q_OBJECT

public:
    explicit StateLine(QWidget *parent = nullptr);

    void setState(const State &state);
    /** As it is shown. */
    const State &state() const { return m_state; }
    void setCovered(bool covered);

signals:
    void cancelRequested();
    void detailsRequested();
    void diagnosisRequested();

protected:
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void build();
    void fitToFont();
    void showState();
    void showTexts();
    void colour();

    State m_given;
    State m_state; ///< that, or what is said of it while covered
    bool m_isCovered = false;
    QLabel *m_icon;
    QLabel *m_headline;
    QLabel *m_line;
    QStackedWidget *m_buttons;
    QPushButton *m_cancel;
    QPushButton *m_details;
    QPushButton *m_diagnose;
};

} // namespace viewer
