#include "apps/tool/option_table.h"

#include "apps/card/card_output.h"
#include "apps/process/translation.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Tool)

constexpr bool SIMULATES = true;
constexpr bool NEVER_SIMULATES = false;
constexpr const char *NO_ARGUMENT = nullptr;
constexpr int DAY_IN_SECONDS = 86400;
constexpr int SHORTEST_INTERVAL_MS = 10;
constexpr int LONGEST_INTERVAL_MS = 60000;
constexpr int HIGHEST_COUNT = 1000000000;

} // namespace

const std::vector<CommandRow> &commandTable()
{
    static const Option json("json", tr("Print JSON for programs, not a table."));
    static const Option inlineParts =
        Option("inline",
               tr("Put these parts of the card into the JSON, in base64 as \"data\" beside "
                  "\"file\", without writing a file: photo, pictures, fingerprints or several "
                  "separated by commas; all stands for the three, the fingerprints too. "
                  "\"idcard-reader usb\" and \"decode\" have no pictures."))
            .value("parts", tr("photo, pictures, fingerprints or all, separated by commas"),
                   [](const QString &value) { return parseInlineParts(value).has_value(); })
            .needs({"json"});
    static const Option wait =
        Option("wait", tr("If no card lies on the reader, wait up to this long for one."))
            .number("seconds", 1, DAY_IN_SECONDS);
    static const Option timeout = settingOption(
        "timeout", tr("Give up when one attempt takes longer. Without a limit, a reader that keeps "
                      "asking for another try is waited for forever. The time of --wait does not "
                      "count. The exit status is then 11."));
    static const Option fault = Option("fault", tr("Let the simulator fail, with one of the faults "
                                                   "below or several separated by commas."))
                                    .value("faults")
                                    .needs({"simulate"});
    static const Option simulatorPhotos(
        "simulator-photos",
        tr("Decode the photo with the simulator's decoder, not with the maker's: simulated readers "
           "and their records have photos in a code of the simulator's own."));
    static const Option road = settingOption(
        "road", tr("The way to the reader: library, through its maker's library, or usb, without "
                   "it, as \"idcard-reader usb\" reads. Over usb there are no pictures of the "
                   "card's sides. The default is library, unless a configuration file says "
                   "otherwise."));
    static const Option device = settingOption(
        "device", tr("The reader on the USB bus, by its vendor and product id: four hexadecimal "
                     "digits each, such as 1209:0001. Not needed where one device alone has the "
                     "pipes of a reader and no kernel driver; \"idcard-reader usb --list\" shows "
                     "what is plugged in."));
    static const Option saveCard =
        Option(
            "out",
            tr("Save the card in this folder, which is made if need be: card.json, photo.bmp and, "
               "when the card has fingerprints, fingerprints.dat. Only their owner can read the "
               "files. Pictures of the card's sides are painted by \"idcard-reader read\" alone."))
            .value("folder");
    static const Option replaceCard =
        Option("force", tr("Replace the card that the folder of --out holds. Without it nothing is "
                           "overwritten."))
            .needs({"out"});
    // How every command can end, and how the reading of a card can end besides.
    const QVector<ExitStatus> any = {ExitStatus::DONE, ExitStatus::PROGRAM_FAILED,
                                     ExitStatus::WRONG_USAGE};
    const QVector<ExitStatus> reading = {
        ExitStatus::READER_NOT_OPENED, ExitStatus::NO_CARD,           ExitStatus::READ_FAILED,
        ExitStatus::PHOTO_NOT_DECODED, ExitStatus::FILES_NOT_WRITTEN, ExitStatus::NOTHING_READ};
    const QVector<ExitStatus> limitedReading =
        reading + QVector<ExitStatus>{ExitStatus::READ_TIMED_OUT};
    static const std::vector<CommandRow> rows = {
        {"read",
         runRead,
         Application::GUI,
         SIMULATES,
         NO_ARGUMENT,
         QT_TR_NOOP("read the card that lies on the reader"),
         QT_TR_NOOP("Reads the card that lies on the reader once and prints what it holds."),
         QT_TR_NOOP("  idcard-reader read\n"
                    "      read a card and show it\n"
                    "  idcard-reader read --wait 30 --json\n"
                    "      give the user half a minute to lay a card on the reader, print JSON\n"
                    "  idcard-reader read --out visitor\n"
                    "      save the card, its photo and its pictures in the folder\n"
                    "      \"visitor\" as well\n"
                    "  idcard-reader read --simulate resident\n"
                    "      try it without a reader (see \"idcard-reader cards\")\n"),
         any + limitedReading,
         {
             json,
             inlineParts,
             Option("out",
                    tr("Save the card in this folder, which is made if need be: card.json, "
                       "photo.bmp, the pictures of the card's sides front.jpg and back.jpg and, "
                       "when the card has fingerprints, fingerprints.dat. Only their owner can "
                       "read the files. A permit for Hong Kong, Macao and Taiwan residents whose "
                       "number begins with none of 81, 82, 83 has no back.jpg."))
                 .value("folder"),
             replaceCard,
             wait,
             timeout,
             road,
             device,
             simulatorPhotos,
             Option("simulate", tr("Read this card on the simulator, without a reader: a name from "
                                   "\"idcard-reader cards\" or a file that describes a card."))
                 .value("card")
                 .excludes({"device", "simulator-photos"}),
             fault,
         },
         CommandRoad::ANY},
        {"watch",
         runWatch,
         Application::GUI,
         SIMULATES,
         NO_ARGUMENT,
         QT_TR_NOOP("read card after card, one line of JSON each"),
         QT_TR_NOOP(
             "Waits for cards and prints every card once, as one line of JSON, until it is ended "
             "with Ctrl-C. A card is new when the reader was empty before it or when it holds "
             "something else than the card before. A card that cannot be read and a reader that is "
             "not there are reported on standard error, and watching continues."),
         QT_TR_NOOP(
             "  idcard-reader watch --out visitors\n"
             "      save every card in a folder of its own: visitors/0001, visitors/0002, ...\n"
             "  idcard-reader watch --count 1\n"
             "      wait for one card, however long it takes\n"
             "  idcard-reader watch --json\n"
             "      print failures for a program as well\n"
             "  idcard-reader watch --events\n"
             "      print for a program when reader and cards come and go\n"),
         any + limitedReading,
         {
             Option("json", tr("Print each failure as one line of JSON as well, and with a card "
                               "what kept it from being saved.")),
             Option(
                 "events",
                 tr("Print one line of JSON for each event, with its time: reader-added, "
                    "reader-removed, card-read with the card, card-removed, and read-failed with "
                    "the error. The line of a card is then within that of its event.")),
             Option(inlineParts).needs({"json", "events"}),
             Option("out", tr("Save every card in a folder of its own in this folder: 0001, 0002, "
                              "... after the highest number that is there. The files are those of "
                              "\"idcard-reader read --out\". Only their owner can read them."))
                 .value("folder"),
             Option("count", tr("End after so many cards.")).number("number", 1, HIGHEST_COUNT),
             Option("interval", tr("Pause between two looks at the reader; 500 if not given."))
                 .number("milliseconds", SHORTEST_INTERVAL_MS, LONGEST_INTERVAL_MS),
             settingOption(
                 "timeout",
                 tr("End when one attempt takes longer. Without a limit, a reader that keeps "
                    "asking for another try is waited for forever. The exit status is then 11.")),
             road,
             device,
             simulatorPhotos,
             Option(
                 "simulate",
                 tr("Put this card on the simulator, without a reader: a name from \"idcard-reader "
                    "cards\" or a file that describes a card. Given several times, the cards come "
                    "one after the other, and the program ends after the last."))
                 .value("card")
                 .repeatable()
                 .excludes({"device", "simulator-photos"}),
             fault,
         },
         CommandRoad::ANY},
        {"usb",
         runUsb,
         Application::CORE,
         SIMULATES,
         NO_ARGUMENT,
         QT_TR_NOOP("read the card over USB, without the maker's library"),
         QT_TR_NOOP("Reads the card that lies on a reader on the USB bus once and prints what it "
                    "holds. The reader maker's library is not needed; the photo needs its photo "
                    "decoder. A reader that this user may not open, that another program holds or "
                    "that is not there is reported as such, with what to do about it."),
         QT_TR_NOOP(
             "  idcard-reader usb --list\n"
             "      show what is plugged in, and the ids for --device\n"
             "  idcard-reader usb --device 1209:0001\n"
             "      read a card and show it\n"
             "  idcard-reader usb --device 1209:0001 --wait 30 --json --out visitor\n"
             "      wait half a minute for a card, print JSON, save the card in \"visitor\"\n"
             "  idcard-reader usb --device 1209:0001 --raw visitor.rec\n"
             "      keep the record for \"idcard-reader decode\" as well\n"),
         any + limitedReading,
         {
             device,
             Option("list", tr("Read no card; list the USB devices but hubs: ids, device node, "
                               "whether this user may open it, whether it has the pipes of a "
                               "reader, and what it says it is."))
                 .excludes({"device", "inline", "out", "force", "wait", "timeout", "raw",
                            "simulator-photos"}),
             json,
             inlineParts,
             saveCard,
             Option("raw", tr("Keep the raw record in this file as the reader sent it, also when "
                              "it cannot be decoded; \"idcard-reader decode\" reads it. Only its "
                              "owner can read the file."))
                 .value("file"),
             Option("force", tr("Replace the card that the folder of --out holds, and the file of "
                                "--raw. Without it nothing is overwritten."))
                 .needs({"out", "raw"}),
             wait,
             timeout,
             simulatorPhotos,
         },
         CommandRoad::USB},
        {"decode",
         runDecode,
         Application::CORE,
         SIMULATES,
         "[FILE]",
         QT_TR_NOOP("decode a raw card record"),
         QT_TR_NOOP("Decodes a raw card record as \"idcard-reader usb --raw\" keeps it, 1297, 1809 "
                    "or 2321 bytes, and prints what it holds. Without FILE, or with -, it comes "
                    "from standard input. Anything else is refused, with the offset where it "
                    "differs; a wrong checksum, which hosts ignore, is only reported."),
         QT_TR_NOOP("  idcard-reader decode visitor.rec\n"
                    "      show the card\n"
                    "  idcard-reader decode visitor.rec --json --out visitor\n"
                    "      print JSON, save the card in the folder \"visitor\"\n"
                    "  idcard-reader decode < visitor.rec\n"
                    "      the same from standard input\n"),
         any + QVector<ExitStatus>{ExitStatus::PHOTO_NOT_DECODED, ExitStatus::FILES_NOT_WRITTEN,
                                   ExitStatus::NOTHING_READ},
         {
             json,
             inlineParts,
             saveCard,
             replaceCard,
             simulatorPhotos,
         }},
        {"render",
         runRender,
         Application::GUI,
         SIMULATES,
         "CARD",
         QT_TR_NOOP("paint the pictures of a described card"),
         QT_TR_NOOP(
             "Paints the pictures of a described card, as a reading of that card would, without a "
             "reader and without a card. CARD is a file that describes a card, or a name from "
             "\"idcard-reader cards\". The faults of the description do not count, and the "
             "portrait is painted even when the description says that the photo is compressed."),
         QT_TR_NOOP("  idcard-reader render my-card.json --out pictures\n"
                    "      write pictures/front.jpg and pictures/back.jpg\n"
                    "  idcard-reader render my-card.json --out pictures --force\n"
                    "      paint again after changing the description\n"),
         any + QVector<ExitStatus>{ExitStatus::FILES_NOT_WRITTEN},
         {
             json,
             Option("out", tr("Write the pictures front.jpg and back.jpg to this folder, which is "
                              "made if need be. Only their owner can read the files. A permit for "
                              "Hong Kong, Macao and Taiwan residents whose number begins with none "
                              "of 81, 82, 83 has no back.jpg."))
                 .value("folder")
                 .required(),
             Option("force", tr("Replace the pictures that the folder of --out holds. Without it "
                                "nothing is overwritten.")),
         }},
        {"cards",
         runCards,
         Application::CORE,
         NEVER_SIMULATES,
         NO_ARGUMENT,
         QT_TR_NOOP("list the cards that the simulator has built in"),
         QT_TR_NOOP("Lists the cards that the simulator has built in, for use with --simulate."),
         QT_TR_NOOP("  idcard-reader cards\n"
                    "      show the names, kinds and purposes\n"),
         any,
         {json}},
        {"doctor",
         runDoctor,
         Application::NONE,
         NEVER_SIMULATES,
         NO_ARGUMENT,
         QT_TR_NOOP("find out why this machine does not read cards"),
         QT_TR_NOOP(
             "Looks at everything that reading a card needs on this machine and says, line by "
             "line, whether it is in order and, if not, what to do: the versions, the locale, the "
             "makers' libraries, the reader on the USB bus and the right to use it, Qt's screen "
             "and JPEG plug-in, and the fonts of the pictures. Nothing is changed, no file is "
             "written and, without --service, no reader is opened: it may be used while cards are "
             "read. The makers' "
             "libraries are loaded, in a process of their own; none of their functions is called."),
         QT_TR_NOOP("  idcard-reader doctor\n"
                    "      look at everything\n"
                    "  idcard-reader doctor --road usb --device 1209:0001\n"
                    "      look at what \"idcard-reader usb\" needs for this reader\n"
                    "  idcard-reader doctor --json\n"
                    "      print the findings for a program\n"),
         any + QVector<ExitStatus>{ExitStatus::FOUND_WARNINGS, ExitStatus::FOUND_FAILURES},
         {
             settingOption("device", tr("Look at this reader alone, by its vendor and product id: "
                                        "four hexadecimal digits each, such as 1209:0001. Without "
                                        "it, every device that could be a reader is looked at.")),
             settingOption("road",
                           tr("Look only at what one way of reading needs: library, the reader "
                              "maker's library (\"idcard-reader read\", readIDCard), or usb, the "
                              "reader on the USB bus (\"idcard-reader usb\", CUsbIdReader).")),
             Option("service",
                    tr("Read through the D-Bus service too, and without it, and say what "
                       "stands in its way. A card on the reader is read; nothing of it "
                       "is shown.")),
             json,
         }},
    };
    return rows;
}

std::vector<Option> optionsOf(const CommandRow &command)
{
    std::vector<Option> options = command.ownOptions;
    options.emplace_back("verbose", tr("Report on standard error what is done, with the messages "
                                       "of the libraries. Card data is never shown there."));
    options.emplace_back("help", tr("Show this help."));
    options.emplace_back("version", tr("Show the version."));
    return options;
}

} // namespace app
