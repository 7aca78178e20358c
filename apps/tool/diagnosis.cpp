#include "apps/tool/diagnosis.h"

#include "apps/doctor/environment.h"
#include "apps/process/interruption.h"
#include "apps/results/message.h"

namespace app
{

namespace
{

/** What can have caused a failure, the more probable first; empty when its code says enough. */
doctor::Findings causesOf(const Failure &failure)
{
    doctor::Environment environment;
    if (failure.name == QLatin1String("IDCARD_RESULT_PHOTO_NOT_DECODED")) {
        environment.photoDecoder = doctor::probePhotoDecoder();
        return checkPhotoDecoder(environment);
    }
    if (failure.name != QLatin1String("IDCARD_RESULT_PORT_NOT_OPEN"))
        return {};
    environment.readerLibrary = doctor::probeReaderLibrary();
    environment.usb = doctor::probeUsb({});
    return checkReaderLibrary(environment) + checkReader(environment) +
           checkPermission(environment) + checkHolder(environment);
}

} // namespace

Failure diagnosed(const Failure &failure, const Options &options)
{
    if (!options.simulate.isEmpty() || options.simulatorPhotos)
        return failure;
    const doctor::Findings causes = causesOf(failure);
    for (const doctor::Finding &finding : causes) {
        if (finding.level == doctor::Level::FAILURE && !isInterrupted())
            return explainedBy({finding.text, finding.remedy, finding.commands}, failure);
    }
    return failure;
}

} // namespace app
