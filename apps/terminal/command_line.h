#pragma once

// The command line of a program or of one of its commands: every option is declared once, in the
// order of the help text, and the parser, the checks and the help's rows follow from that.

#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include <QCommandLineParser>
#include <QString>
#include <QStringList>
#include <QVector>

#include "apps/process/translation.h"

namespace app
{

/** Exactly one of the three is set. */
template <typename Options>
struct CommandLine {
    std::optional<Options> options; ///< to be carried out
    QString text;                   ///< help or version, to be printed
    QString problem;                ///< wrong usage: what is wrong and what to do
};

/** Option("out", "Save the card in this folder.").value("folder").required() */
struct Option {
    using Check = std::function<bool(const QString &value)>;

    /** An option without a value. It can be given more than once. */
    Option(QString optionName, QString optionMeaning)
        : name(std::move(optionName)), meaning(std::move(optionMeaning))
    {
    }

    /** Gives it a value; it can then be given only once. `whatIsRight` says what passes `check`.
     */
    Option &value(QString nameOfValue, QString whatIsRight = {}, Check check = nullptr);
    Option &number(QString nameOfValue, int lowest, int highest);

    Option &repeatable();
    Option &required();
    /** One of these options must be given too. */
    Option &needs(const QStringList &names);
    /** None of these options may be given too, nor is one of them required then. */
    Option &excludes(const QStringList &names);

    /** How it is written: "--out <folder>". */
    QString usage() const;

    QString name;
    QString meaning;
    QString valueName; ///< empty: it has no value
    QString wanted;    ///< the values that are accepted, in words
    Check accepts;     ///< null: takes every value
    bool isRepeatable = false;
    bool isRequired = false;
    QStringList needed;
    QStringList excluded;
};

/** Whether `typed` is a number in this range. */
bool isWholeNumber(const QString &typed, int lowest, int highest);

/** What is said of a wrong command line, for a program to say it in its own way. */
struct Phrases {
    IDCARD_TEXTS(CommandLine)

    QString noOption = tr("%1 has no option %2.");
    QString noOptionButThis = tr("%1 has no option %2; did you mean %3?");
    QString noArgument = tr("%2 takes no argument %1.");
    QString noValue = tr("%1 needs a value: \"%2\"."); ///< empty: `wrongValue` says it
    QString wrongValue = tr("%1 takes %2, not %3.");
    QString seeHelp = tr("See \"%1\".");
};

class OptionParser
{
public:
    /**
     * `call`: how it is called, "idcard-reader read", whose last word the messages name it by.
     * `argument`: what must follow, or may if it stands in brackets; empty: nothing may. An option
     * "help" is -h too.
     */
    OptionParser(QString call, QString argument, std::vector<Option> options, Phrases phrases = {});

    /** Lets long options begin with one dash too. */
    void acceptOneDash();

    /**
     * Reads the arguments after the call. Returns what is wrong with them and where the help is, or
     * an empty text; where "help" or "version" is set, only that is sure. Needs a QCoreApplication.
     */
    QString parse(const QStringList &arguments);

    QString refusal(const QString &problem) const;
    const QString &call() const { return m_call; }
    bool has(const QString &name) const { return m_names.contains(name); }
    bool isSet(const QString &name) const { return has(name) && m_parser.isSet(name); }
    /** The last one; empty when the option is not given or not known. */
    QString value(const QString &name) const
    {
        return isSet(name) ? m_parser.value(name) : QString();
    }
    std::optional<int> number(const QString &name) const;
    QString argument() const { return m_parser.positionalArguments().value(0); }
    QStringList values(const QString &name) const
    {
        return isSet(name) ? m_parser.values(name) : QStringList();
    }

    /** "idcard-reader read [options]". */
    QString usage() const;
    /** For helpSection(). */
    QVector<QStringList> helpRows() const;

private:
    QString subject() const { return m_call.section(QLatin1Char(' '), -1); }
    QString problemOfUnknown(const QStringList &arguments) const;
    QString problemOfArguments() const;
    QString problemOfOptions() const;
    /** A file of such a name could not be opened, and one of another name would be written. */
    static QString problemOfEncoding(const QStringList &arguments);
    QString problemOf(const Option &option) const;
    QString problemOfValue(const Option &option, const QString &value) const;
    const Option *excluderOf(const Option &option) const;
    QStringList waysToGive(const Option &option) const;

    QString m_call;
    QString m_argument;
    std::vector<Option> m_options;
    QStringList m_names; ///< of the options
    Phrases m_phrases;
    QCommandLineParser m_parser;
};

} // namespace app
