#pragma once

#include <QPointF>
#include <QSizeF>
#include <QString>

#include "common/card_records.h"
#include "common/export.h"

/**
 * Paints a record onto the picture of its empty card. All operations are static and keep no state;
 * they need a running Qt GUI application with a screen and belong into its GUI thread.
 *
 * A maker takes a filled record, only reads it, and returns the base64 text of a JPEG file. Front
 * and back are independent of each other. Nothing is validated and nothing is reported: an empty
 * field draws nothing, a photo that cannot be read (or that would need more than 64 MiB) is left
 * out, and a missing template gives an empty text.
 *
 * The resident card is painted at the size that a real card has on the primary screen; the other
 * kinds measure 494 x 312 pixels on any screen. Texts are set in "华文细黑", numbers in "黑体".
 */
class IDCARD_READER_EXPORT MakeCardImg
{
public:
    /** Width of a card, ID-1 of ISO/IEC 7810, in millimetres. */
    static constexpr double CARD_WIDTH_MM = 85.6;

    /** Height of a card, ID-1 of ISO/IEC 7810, in millimetres. */
    static constexpr double CARD_HEIGHT_MM = 54.0;

    MakeCardImg();

    /** Size of a card on the primary screen in pixels, not rounded. Logs it in one debug line. */
    static QSizeF getCardRealPixelSize();

    /** A place on the card, given in millimetres, in pixels; not rounded. */
    static QPointF getPixelPosFromMMPos(QPointF mm);

    /**
     * The factor that brings the picture at `imagePath` to the size of a real card: the mean of the
     * horizontal and the vertical one. Negative when the picture cannot be loaded.
     */
    static double getRealScaleRatio(QString imagePath);

    /** The front of a resident identity card. */
    static QString makeIDCardCNFrontBase64(_tagIDCARD_INFO_ALL_CN *info);

    /** The back of a resident identity card. */
    static QString makeIDCardCNBackBase64(_tagIDCARD_INFO_ALL_CN *info);

    /** The front of a residence permit. */
    static QString makeIDCardHmtFrontBase64(_tagIDCARD_INFO_ALL_HMT *info);

    /**
     * The back depends on where the holder comes from: a number beginning with "81" or "82" has
     * that of Hong Kong and Macao, one with "83" that of Taiwan; any other gives an empty text.
     */
    static QString makeIDCardHmtBackBase64(_tagIDCARD_INFO_ALL_HMT *info);

    /** The front of a foreigner's card of the 2017 edition. */
    static QString makeIDCardF2017FrontBase64(_tagIDCARD_INFO_ALL_FOREIGN_2017 *info);

    /** The back carries no field; `info` is not read. */
    static QString makeIDCardF2017BackBase64(_tagIDCARD_INFO_ALL_FOREIGN_2017 *info);

    /** The front of a foreigner's card of the new edition. */
    static QString makeIDCardFNewFrontBase64(_tagIDCARD_INFO_ALL_FOREIGN_NEW *info);

    /** The back carries no field; `info` is not read. */
    static QString makeIDCardFNewBackBase64(_tagIDCARD_INFO_ALL_FOREIGN_NEW *info);
};
