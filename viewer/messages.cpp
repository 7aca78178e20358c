#include "viewer/messages.h"

#include <QCoreApplication>

namespace viewer
{

namespace
{

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(Messages)
};

Message unknownCode(int code)
{
    return {
        Message::Kind::Failure,
        Texts::tr("The library returned the code %1, which this program does not know.").arg(code),
        {Texts::tr("Install the program and the library of the same version.")}};
}

} // namespace

QString translated(const char *context, const char *text)
{
    return *text == '\0' ? QString() : QCoreApplication::translate(context, text);
}

Message messageOf(const app::ResultEntry &entry, const QStringList &details)
{
    const auto text = [](const char *source) { return translated("Results", source); };
    Message message{Message::Kind::Failure, text(entry.summary), {}};
    message.lines << Texts::tr("Code: %1 (%2)").arg(entry.code).arg(QLatin1String(entry.constant))
                  << details << Texts::tr("Cause: %1").arg(text(entry.cause))
                  << Texts::tr("What to do: %1").arg(text(entry.remedy));
    return message;
}

Message messageOf(const app::ReadOutcome &outcome)
{
    const app::ResultEntry *const entry = app::findResult(outcome.code, outcome.card.has_value());
    return entry == nullptr ? unknownCode(outcome.code) : messageOf(*entry);
}

Message messageOf(const app::UsbOutcome &outcome)
{
    const auto entry = app::resultOf(outcome);
    return entry ? messageOf(*entry, {Texts::tr("Device: %1").arg(app::deviceOf(outcome))})
                 : unknownCode(outcome.code);
}

Message messageOf(const app::SimulatorProblem &problem)
{
    return {Message::Kind::Failure,
            Texts::tr("The simulator cannot be used as it was asked to."),
            {problem.message}};
}

Message undecodableTextMessage()
{
    return {
        Message::Kind::Failure,
        Texts::tr("The card's text could not be decoded."),
        {Texts::tr("Cause: %1")
             .arg(Texts::tr(
                 "The sex code of a foreigner's card must be 0, 1, 2 or 9, and this one is not.")),
         Texts::tr("What to do: %1").arg(Texts::tr("Read the card once more."))}};
}

} // namespace viewer
