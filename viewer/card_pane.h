#pragma once

// A card as it is shown: both sides and the photo in true size, and the table of its fields.

#include <QLabel>
#include <QScrollArea>
#include <QTableView>
#include <QWidget>

#include "viewer/card_table.h"
#include "viewer/picture_view.h"

namespace viewer
{

class CardPane : public QWidget
{
    Q_OBJECT

public:
    CardPane();

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
    QWidget *makePictures();
    void makeTable();
    void followScreen(QScreen *screen);
    void rescale();
    void copy(const QVector<int> &rows) const;

    QScrollArea m_sides; // before the pictures, which lie in it: they are to be destroyed first
    PictureView m_front;
    PictureView m_back;
    PictureView m_photo;
    QLabel m_scaleNote;
    CardTable m_fields;
    QTableView m_table;
    QScreen *m_screen = nullptr;
};

} // namespace viewer
