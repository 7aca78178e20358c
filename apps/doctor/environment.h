#pragma once

// What the doctor knows of the machine before it judges. The probes fill it, the checks read it.

#include <array>
#include <optional>

#include <QByteArray>
#include <QSizeF>
#include <QString>
#include <QStringList>
#include <QVector>

#include "apps/card/usb_devices.h"

namespace app::doctor
{

/** Which way of reading the machine is to serve. */
enum class Roads { Both, Library, Usb };

struct Versions {
    QString program;
    QString library; ///< as `getSDKVersion` tells it
    QString qtBuilt;
    QString qtRunning;
};

struct LocaleState {
    QString requested;  ///< by the environment; empty when it asks for none
    bool isSet = false; ///< whether the system has it
    QString name;       ///< what `setlocale` made of it
    QString encoding;   ///< of the locale that is in force
};

/** How a file looks without being loaded. */
enum class LibraryShape { Sound, Unreadable, NoLibrary, OtherMachine, CutOff };

struct LibraryFile {
    QString path;
    LibraryShape shape = LibraryShape::Sound;
    QString machine; ///< the processor that it is for
};

/** How the attempt to load ended. */
enum class Loading { NotTried, Loaded, NotLoaded, Crashed, Hung };

/** One of the makers' two libraries. */
struct LibraryState {
    QString fileName;
    QStringList functions;
    QString ownMachine;         ///< the processor that this program is for
    QString ownFolder;          ///< of libidcard_reader_lib.so
    QStringList places;         ///< folders that are looked in, in this order
    QVector<LibraryFile> files; ///< in the order in which the library comes by them
    QString found;              ///< the one at which the loader's search ends; empty: at none
    QString definedIn; ///< the file that has the functions, when they are in the process already
    Loading loading = Loading::NotTried;
    QString tried;      ///< the file that was loaded, or that loading ended at
    QString crash;      ///< how the loading program ended
    QStringList errors; ///< of the loader
    QByteArray log;     ///< what the library printed when it was loaded
    QStringList missing;
};

struct NodeRights {
    bool isThere = false;
    unsigned int mode = 0;
    QString owner;
    QString group;
    bool hasAcl = false;
};

struct Holder {
    int process = 0;
    QString name;
};

struct Holders {
    QVector<Holder> processes;
    int unseen = 0; ///< processes whose files this user may not see
};

/** A device and what stands between it and the user. */
struct UsbNode {
    UsbDevice device;
    NodeRights rights;
    Holders holders;
};

/** The udev rule file that is in force. */
struct RuleState {
    QString path;           ///< empty: there is none
    bool isMasked = false;  ///< an empty file or a link to /dev/null takes the rule away
    QVector<UsbIds> opened; ///< the devices that it opens
    QString group;          ///< that it gives them to
    QString shipped = {};   ///< another copy, which comes with this program; empty: there is none
};

struct GroupState {
    QString name;
    QString user;
    bool isRoot = false;
    bool exists = false;
    bool isMember = false;  ///< by the system's lists of groups
    bool isInForce = false; ///< for this process
};

struct UsbState {
    int code = 0;                ///< why nothing could be listed: `USB_READER_CODE`; else 0
    std::optional<UsbIds> asked; ///< the only device to look at
    QVector<UsbNode> nodes;      ///< that could be a reader
    int others = 0;              ///< devices that could not
    RuleState rule;
    GroupState group;
};

struct ScreenState {
    QString name;
    QSizeF pixels;
    QSizeF millimetres;
    double dpiX = 0;
    double dpiY = 0;
    double devicePixelRatio = 1;
    QSizeF card; ///< pixels that a card has on it
};

struct FontState {
    QString family; ///< as the pictures name it
    QString weight; ///< as they ask for it
    QString got;    ///< the family that Qt takes
    QStringList faces;
    bool isInstalled = false; ///< whether the family itself is
    bool isStandIn = false;   ///< whether it is one that the project chose
    bool hasChinese = false;
    bool isKnown = false;
    QString standIn = {}; ///< one of the project's choice that is installed; empty: none is
};

struct PicturesState {
    QString platform;               ///< of Qt, as asked for; empty: Qt chooses
    bool isOffscreenChosen = false; ///< because there is no display
    bool hasStarted = false;        ///< whether Qt comes up with it
    QString failure;                ///< why not
    QString runningPlatform;
    std::optional<ScreenState> screen;
    QByteArray log; ///< what Qt said
    bool isJpegKnown = false;
    bool canWriteJpeg = false;
    QStringList pluginFolders;
    QString jpegPlugin; ///< its file; empty when there is none
    QString jpegProblem;
    std::array<FontState, 2> fonts;   ///< of the texts and of the number
    bool isFontChoiceInForce = false; ///< whether fontconfig has the project's file
    QString shippedFontChoice; ///< a copy of it that comes with this program; empty: there is none
};

struct Environment {
    Roads roads = Roads::Both;
    Versions versions;
    LocaleState locale;
    LibraryState readerLibrary;
    LibraryState photoDecoder;
    UsbState usb;
    PicturesState pictures;
};

} // namespace app::doctor
