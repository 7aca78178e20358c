#pragma once

// The simulator, loaded on request: linked in, its functions would replace the reader
// maker's.

#include <QLibrary>
#include <QString>

#include "apps/process/exit_status.h"

namespace app
{

/** What went wrong, for people, and how the program ends by it; no text: nothing went wrong. */
struct SimulatorProblem {
    QString message;
    ExitStatus exitStatus = ExitStatus::DONE;

    explicit operator bool() const { return exitStatus != ExitStatus::DONE; }
};

/** The functions of simulator/simulator.h in the loaded library. */
class SimulatorLibrary
{
public:
    /**
     * Loads the library that IDCARD_SIMULATOR_LIBRARY names or, when it is not set, the one beside
     * the program, in ../lib or in the folder that libraries are installed in. It stays
     * loaded.
     */
    SimulatorProblem load();

    bool isLoaded() const { return !m_path.isEmpty(); }

    /** Which file it is, once it is loaded. */
    QString path() const { return m_path; }

    SimulatorProblem putCard(const QString &card);
    /** Without the card's faults, and with a photo that is a picture. */
    SimulatorProblem putPlainCard(const QString &card);
    void takeCard();
    SimulatorProblem setFaults(const QString &faults);

private:
    QLibrary m_library;
    QString m_path;
    int (*m_putCard)(const char *, char *, unsigned int) = nullptr;
    int (*m_putPlainCard)(const char *, char *, unsigned int) = nullptr;
    void (*m_takeCard)() = nullptr;
    int (*m_setFaults)(const char *, char *, unsigned int) = nullptr;
};

} // namespace app
