#pragma once

// What the doctor knows of the machine before it judges.

#include "apps/doctor/configuration.h"
#include "apps/doctor/general.h"
#include "apps/doctor/library.h"
#include "apps/doctor/pictures.h"
#include "apps/doctor/service.h"
#include "apps/doctor/usb.h"
#include "apps/doctor/web_pages.h"

namespace app::doctor
{

/** Which way of reading the machine is to serve. */
enum class Roads { BOTH, LIBRARY, USB };

struct Environment {
    Roads roads = Roads::BOTH;
    Versions versions;
    LocaleState locale;
    Configuration configuration;
    LibraryState readerLibrary;
    LibraryState photoDecoder;
    UsbState usb;
    PicturesState pictures;
    WebPagesState webPages;
    ServiceState service;
};

} // namespace app::doctor
