#include "apps/card_view/attention.h"

#include <QCoreApplication>

#include "apps/card/card_notes.h"

namespace viewer
{

namespace
{

// In years, by the Civil Code of the country.
constexpr int FULL_AGE = 18;

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(Attention)
};

QString wordsOf(const app::CardNote &note, bool isCovered)
{
    const bool quotesCard = note.key.startsWith(QLatin1String("cut:"));
    return isCovered && quotesCard ? Texts::tr("A text is cut.") : note.words;
}

} // namespace

QStringList attentionTo(const app::Card &card, bool isCovered, const QDate &today)
{
    QStringList sentences;
    for (const app::CardNote &note : app::cardNotes(card, today))
        sentences << wordsOf(note, isCovered);
    const std::optional<int> age = app::ageOnDay(card, today);
    if (age && *age < FULL_AGE)
        sentences << (isCovered ? Texts::tr("The holder is a minor.")
                                : Texts::tr("The holder is a minor, %1 years old.").arg(*age));
    sentences.removeDuplicates();
    return sentences;
}

} // namespace viewer
