#pragma once

// The command line of a program or of one of its commands: every option is declared once, in the
// order of the help text, and the parser, the checks and the help's rows follow from that.

#include <functional>
#include <optional>
#include <vector>

#include <QCommandLineParser>
#include <QString>
#include <QStringList>
#include <QVector>

namespace app
{

/** Exactly one of the three is set. */
template <typename Options>
struct CommandLine {
    std::optional<Options> options; ///< to be carried out
    QString text;                   ///< help or version, to be printed
    QString problem;                ///< wrong usage: what is wrong and what to do
};

/** Option("out", "Save the card in this folder.").text("folder", &folder).required() */
class Option
{
public:
    /** Takes a value over; returns what it should have been, empty when all is well. */
    using Take = std::function<QString(const QString &value)>;

    /** An option without a value. It can be given more than once. */
    Option(const char *name, QString meaning, bool *flag = nullptr);

    /** Gives it a value; it can then be given only once. */
    Option &value(const char *valueName, Take take);
    Option &text(const char *valueName, QString *target);
    template <typename Number>
    Option &wholeNumber(const char *valueName, int lowest, int highest, Number *target)
    {
        return value(valueName, [=](const QString &typed) {
            int number = 0;
            QString wanted = takeNumber(typed, lowest, highest, &number);
            if (wanted.isEmpty())
                *target = number;
            return wanted;
        });
    }

    /** Each value is taken after the one before it. */
    Option &repeatable();
    Option &required();
    /** One of these options must be given too. */
    Option &needs(const QStringList &names);
    /** None of these options may be given too, nor is one of them required then. */
    Option &excludes(const QStringList &names);

    /** How it is written: "--out <folder>". */
    QString usage() const;

private:
    friend class OptionParser;

    static QString takeNumber(const QString &typed, int lowest, int highest, int *number);

    QString m_name;
    QString m_meaning;
    QString m_valueName;
    Take m_take;
    bool *m_flag;
    bool m_isRepeatable = false;
    bool m_isRequired = false;
    QStringList m_needs;
    QStringList m_excludes;
};

/** What is said of a wrong command line, for a program to say it in its own way. */
struct Phrases {
    QString noOption = QStringLiteral("%1 has no option %2.");
    QString noOptionButThis = QStringLiteral("%1 has no option %2; did you mean %3?");
    QString noArgument = QStringLiteral("%2 takes no argument %1.");
    QString noValue = QStringLiteral("%1 needs a value: \"%2\"."); ///< empty: `wrongValue` says it
    QString wrongValue = QStringLiteral("%1 takes %2, not %3.");
    QString seeHelp = QStringLiteral("See \"%1\".");
};

class OptionParser
{
public:
    enum class Request { RUN, HELP, VERSION, REFUSED };

    /**
     * `call`: how it is called, "idcard-reader read", whose last word the messages name it by.
     * `argument`: what must follow, or may if it stands in brackets; empty: nothing may. An option
     * "help" is -h too.
     */
    OptionParser(QString call, QString argument, std::vector<Option> options, Phrases phrases = {});

    /** Lets long options begin with one dash too. */
    void acceptOneDash();

    /** Reads the arguments after the call. Needs a QCoreApplication. */
    Request parse(const QStringList &arguments);

    /** What was wrong; the line about the help included. */
    QString problem() const { return refusal(m_problem); }
    QString refusal(const QString &problem) const;
    bool has(const QString &name) const;
    bool isSet(const QString &name) const { return m_parser.isSet(name); }
    QString argument() const { return m_parser.positionalArguments().value(0); }

    /** "idcard-reader read [options]". */
    QString usage() const;
    /** For helpSection(). */
    QVector<QStringList> helpRows() const;
    /** The help text in Qt's form and language. */
    QString helpText(const QString &description);

private:
    QString subject() const { return m_call.section(QLatin1Char(' '), -1); }
    QString problemOfUnknown(const QStringList &arguments) const;
    QString problemOfArguments() const;
    QString problemOfOptions() const;
    QString problemOf(const Option &option) const;
    QString problemOfValue(const Option &option, const QString &value) const;
    const Option *excluderOf(const Option &option) const;
    QStringList waysToGive(const Option &option) const;

    QString m_call;
    QString m_argument;
    std::vector<Option> m_options;
    Phrases m_phrases;
    QCommandLineParser m_parser;
    QString m_problem;
};

} // namespace app
