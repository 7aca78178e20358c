#pragma once

// What the window tells: a headline and what belongs to it, in the user's language.

#include <QString>
#include <QStringList>

#include "apps/card_reader.h"
#include "apps/simulator_library.h"
#include "apps/usb_reading.h"

namespace viewer
{

struct Message {
    enum class Kind { Note, Warning, Failure };

    Kind kind = Kind::Note;
    QString headline;
    QStringList lines;
};

/** A text of the application's tables, where it is marked for translation in `context`. */
QString translated(const char *context, const char *text);

/** A row of a catalogue of results; `details` are lines that follow the code. */
Message messageOf(const app::ResultEntry &entry, const QStringList &details = {});

/** A reading that gave no card. */
Message messageOf(const app::ReadOutcome &outcome);
Message messageOf(const app::UsbOutcome &outcome);

/** The simulator cannot be used as it was asked to. */
Message messageOf(const app::SimulatorProblem &problem);

/** A record that came whole and could not be decoded. */
Message undecodableTextMessage();

} // namespace viewer
