#pragma once

// A card as it is shown: both sides and the photo in true size, and the table of its fields.

#include "apps/viewer/card_table.h"
#include "ui_card_pane.h"

namespace viewer
{

class CardPane : public QWidget
{
    Q_OBJECT

public:
    explicit CardPane(QWidget *parent = nullptr);

    /** Null: no card. */
    void setCard(const app::CardPointer &card);
    void setCovered(bool covered);

    /** What can be done with the rows of the table, for its context menu. */
    void addTableActions(const QList<QAction *> &actions) { m_ui.fields->addActions(actions); }

    /** The rows that are selected, or all, to the clipboard. */
    void copySelected() const { copyRows(false); }
    void copyAll() const { copyRows(true); }

protected:
    void showEvent(QShowEvent *event) override;

private:
    void followScreen(QScreen *screen);
    void rescale();
    void showPictures();
    void copyRows(bool all) const;

    Ui::CardPane m_ui;
    app::CardTable m_fields;
    app::CardPointer m_card;
    bool m_isCovered = false;
};

} // namespace viewer
