// The states of the simulated reader, and its answers in them.

#include "simulator/reader/vendor_reader.h"

#include <cstring>

#include <QByteArray>
#include <QThread>

#include "common/card_records.h"
#include "common/closed_functions.h"
#include "simulator/card/card_media.h"
#include "simulator/card/vendor_record.h"

namespace simulator
{

namespace
{

constexpr int READ_FLAG = 1;

bool isComplete(const VendorReadTarget &target)
{
    return target.info != nullptr && target.photo != nullptr && target.photoLength != nullptr &&
           target.fingerprints != nullptr && target.fingerprintLength != nullptr;
}

QByteArray deliveredPhoto(const CardDescription &card, const Faults &faults)
{
    if (faults.has(FaultKind::PHOTO_UNDECODABLE))
        return undecodablePhoto(card);
    switch (card.photoDelivery) {
    case PhotoDelivery::BMP_FILE:
        break;
    case PhotoDelivery::COMPRESSED:
        return compressedPhoto(card);
    case PhotoDelivery::OWN_FILE: // reported as long as a photo's BMP file, however short it is
        return card.photoFileData.leftJustified(int{IDCARD_PHOTO_SIZE}, '\0');
    }
    return photoBmpFile(card);
}

void deliver(const CardDescription &card, const Faults &faults, const VendorReadTarget &target)
{
    *target.info = vendorRecord(card);
    if (const auto kind = faults.number(FaultKind::UNKNOWN_KIND))
        target.info->kind = *kind;

    // A length beyond what there is of the photo reports zeros after it.
    QByteArray photo = deliveredPhoto(card, faults);
    const int length = faults.number(FaultKind::PHOTO_LENGTH).value_or(photo.size());
    photo = photo.leftJustified(length, '\0', true);
    std::memcpy(target.photo, photo.constData(), static_cast<std::size_t>(length));
    *target.photoLength = static_cast<unsigned int>(length);

    const QByteArray prints = fingerprintTemplates(card);
    std::memcpy(target.fingerprints, prints.constData(), static_cast<std::size_t>(prints.size()));
    *target.fingerprintLength = static_cast<unsigned int>(prints.size());
}

} // namespace

int VendorReader::open(int port, QString *problem)
{
    if (port != KVO_PORT)
        return VENDOR_WRONG_PORT;
    if (m_open)
        return VENDOR_ALREADY_OPEN;
    if (!m_slot.followEnvironment(problem))
        return VENDOR_BAD_ENVIRONMENT;
    if (const auto code = m_slot.faults().number(FaultKind::OPEN_FAILS))
        return *code;
    if (!m_slot.findReader())
        return VENDOR_NO_READER;
    m_open = true;
    m_found.reset();
    return KVO_SUCCESS;
}

int VendorReader::checkedPort(int port) const
{
    if (port != KVO_PORT)
        return VENDOR_WRONG_PORT;
    return m_open ? KVO_SUCCESS : VENDOR_NOT_OPEN;
}

int VendorReader::find(int port)
{
    const int checked = checkedPort(port);
    if (checked != KVO_SUCCESS)
        return checked;
    if (!m_slot.findCard()) {
        m_found.reset();
        return VENDOR_NO_CARD;
    }
    m_found = m_slot.placement();
    return KVO_SUCCESS;
}

int VendorReader::read(int port, const VendorReadTarget &target, int flag)
{
    const int checked = checkedPort(port);
    if (checked != KVO_SUCCESS)
        return checked;
    if (!isComplete(target) || flag != READ_FLAG)
        return VENDOR_WRONG_ARGUMENT;
    if (!m_found)
        return VENDOR_CARD_NOT_FOUND;
    return answerRead(target);
}

int VendorReader::answerRead(const VendorReadTarget &target)
{
    const Faults faults = m_slot.faults();
    if (const auto delay = faults.number(FaultKind::DELAY_MS))
        QThread::msleep(static_cast<unsigned long>(*delay));
    if (faults.has(FaultKind::CARD_REMOVED))
        m_slot.removeCard();
    const CardDescription *card = m_slot.card();
    if (card == nullptr || m_found != m_slot.placement()) {
        m_found.reset();
        return VENDOR_CARD_REMOVED;
    }
    if (m_slot.failsTransiently())
        return KVO_READ_AGAIN;
    if (const auto code = faults.number(FaultKind::READ_FAILS))
        return *code;
    deliver(*card, faults, target);
    return KVO_SUCCESS;
}

int VendorReader::close(int port)
{
    const int checked = checkedPort(port);
    if (checked == KVO_SUCCESS) {
        m_open = false;
        m_found.reset();
    }
    return checked;
}

} // namespace simulator
