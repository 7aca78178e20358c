#pragma once

// A card as it is shown: both sides and the photo in true size, and the table of its fields.

#include <memory>

#include <QWidget>

#include "viewer/card_table.h"

class QScreen;

namespace viewer
{

namespace Ui
{
class CardPane;
}

class CardPane : public QWidget
{
    Q_OBJECT

public:
    explicit CardPane(QWidget *parent = nullptr);
    ~CardPane() override;

    /** Null: no card. */
    void setCard(const CardPointer &card);
    void setCovered(bool covered);

    /** What can be done with the rows of the table, for its context menu. */
    void addTableActions(const QList<QAction *> &actions);

    /** The rows that are selected, or all, to the clipboard. */
    void copySelected() const;
    void copyAll() const;

protected:
    void showEvent(QShowEvent *event) override;

private:
    void followScreen(QScreen *screen);
    void rescale();

    const std::unique_ptr<Ui::CardPane> m_ui;
    CardTable m_fields;
    QScreen *m_screen = nullptr;
};

} // namespace viewer
