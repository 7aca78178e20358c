#include "tests/doctor/doctor_machine.h"

using namespace app;
using namespace app::doctor;

namespace
{

LibraryState loadedLibrary(const char *path, const QStringList &functions)
{
    LibraryState state;
    state.fileName = QString::fromLatin1(path).section('/', -1);
    state.functions = functions;
    state.ownMachine = "x86-64";
    state.ownFolder = "/usr/lib";
    state.places = QStringList{"/usr/lib"};
    state.files = {{QString::fromLatin1(path), LibraryShape::SOUND, "x86-64"}};
    state.loading = Loading::LOADED;
    state.tried = QString::fromLatin1(path);
    return state;
}

} // namespace

Environment fineMachine()
{
    Environment machine;
    machine.versions = {"1.5.0", "version:1.5.0", "5.11.3", "5.15.8"};
    machine.locale = {"zh_CN.UTF-8", true, "zh_CN.UTF-8", "UTF-8"};
    machine.configuration = {
        {"/etc/idcard-reader.conf", true, {{"road", "usb", 1}, {"device", "1209:0001", 3}}},
        {"/home/clerk/.config/idcard-reader.conf"}};
    machine.readerLibrary =
        loadedLibrary("/usr/lib/libmaker.so", {"KVO_OpenPort", "KVO_FindIDCard"});
    machine.photoDecoder = loadedLibrary("/usr/lib/libdecoder.so", {"unpack"});

    UsbNode node;
    node.device.ids = {0x1209, 0x0001};
    node.device.node = "/dev/bus/usb/001/002";
    node.device.manufacturer = "Maker";
    node.device.product = "Reader";
    node.device.deviceClass = "vendor-specific";
    node.device.hasReaderPipes = true;
    node.device.mayOpen = true;
    node.rights = {true, 0660, "root", "idcard-reader", false};
    machine.usb.nodes = {node};
    machine.usb.rule = {"/etc/udev/rules.d/69-idcard-reader.rules",
                        false,
                        {UsbIds{0x1209, 0x0001}},
                        "idcard-reader"};
    machine.usb.accessProgram = "idcard-reader-access";
    machine.usb.group = {"idcard-reader", "clerk", false, true, true, true};

    machine.webPages = {true,
                        {{"https://pms.example", "http://intranet"}, {}},
                        {{"chromium", "/etc/chromium/host.json", "/usr/libexec/host", true},
                         {"firefox", "/usr/lib/mozilla/host.json", "/usr/libexec/host", true}},
                        {},
                        {}};
    machine.service.isProbed = true;

    PicturesState &pictures = machine.pictures;
    pictures.hasStarted = true;
    pictures.runningPlatform = "xcb";
    pictures.screen =
        ScreenState{{1920, 1080}, {508, 286}, 96, 96, 1, {323.5275590551181, 204.0944881889}};
    pictures.isJpegKnown = true;
    pictures.canWriteJpeg = true;
    pictures.jpegPlugin = "/qt/imageformats/libqjpeg.so";
    pictures.fonts[0] = {"华文细黑", "normal", "SomeFont", {"SomeFont Regular"},
                         false,      true,     true,       true};
    pictures.fonts[1] = {"黑体", "demi-bold", "黑体", {"黑体 Bold"}, true, true, true, true};
    return machine;
}
