#pragma once

// Where cards are laid on the simulator; seen only when cards are read from it.

#include <QComboBox>
#include <QGroupBox>

namespace viewer
{

class SimulatorPanel : public QGroupBox
{
    Q_OBJECT

public:
    explicit SimulatorPanel(QWidget *parent = nullptr);

    /** As if the user had chosen and laid it on. */
    void putCard(const QString &card, const QString &faults);

signals:
    void cardPut(const QString &card, const QString &faults);
    void cardTaken();

private:
    void selectCard(const QString &card);
    void put();
    void askForCardFile();

    QComboBox *m_card;
    QComboBox *m_faults;
};

} // namespace viewer
