#pragma once

// A card as a clerk sees it: both sides large, the photo, name and number in large type, what to
// look at, and the fields.

#include <QLabel>
#include <QScreen>
#include <QTableView>
#include <QWidget>

#include "apps/card_view/card_table.h"
#include "apps/card_view/picture_view.h"

namespace viewer
{

class CardPane : public QWidget
{
    Q_OBJECT

public:
    enum class Copied { NAME, NUMBER, PHOTO, FRONT, BACK };

    explicit CardPane(QWidget *parent = nullptr);

    /** A card that was read or chosen. Null: no card. */
    void setCard(const app::CardPointer &card, const QString &caption);
    /** The card stays, greyed, under this caption; nothing of it can be copied any more. */
    void fade(const QString &caption);

    void setCovered(bool covered);
    void setTrueSize(bool trueSize);

    QTableView *fields() const { return m_fieldsView; }
    /** Where a splitter puts what belongs beside the sides. */
    QWidget *holderColumn() const { return m_holderColumn; }

    /** Each copies and says so by `copied`, or refuses what is covered or not on the card. */
    void copy(Copied what);
    void copyRow(int row);
    void copySelectedRow();
    void copyAllWithLabels();

signals:
    void copied(const QString &what);
    void copyRefused();

protected:
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void build();
    QWidget *builtSides();
    QWidget *builtHolder();
    void fitToFont();
    void followScreen(QScreen *screen);
    void rescale();
    void showCard();
    void showNotes();
    void copyShown(const QString &text, const QString &label, bool isCovered);

    app::CardTable m_fields;
    app::CardPointer m_card;
    QString m_caption;
    bool m_isCovered = false;
    bool m_isFaded = false;
    bool m_isTrueSize = false;

    PictureView *m_front;
    PictureView *m_back;
    PictureView *m_photo;
    QLabel *m_captionLabel;
    QLabel *m_name;
    QLabel *m_number;
    QLabel *m_notes;
    QLabel *m_scaleNote;
    QTableView *m_fieldsView;
    QWidget *m_holderColumn = nullptr;
};

} // namespace viewer
