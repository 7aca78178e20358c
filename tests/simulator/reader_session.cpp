#include "tests/simulator/reader_session.h"

#include <QString>

#include "common/card_records.h"
#include "common/closed_functions.h"
#include "simulator/simulator.h"

constexpr unsigned char UNTOUCHED = 0xEE;

ReaderSession::ReaderSession() : m_openCode(KVO_OpenPort(KVO_PORT)) {}

ReaderSession::~ReaderSession()
{
    KVO_ClosePort(KVO_PORT);
}

int ReaderSession::find()
{
    return KVO_FindIDCard(KVO_PORT);
}

ReadAnswer ReaderSession::read()
{
    ReadAnswer answer;
    answer.photo.assign(IDCARD_PHOTO_SIZE, UNTOUCHED);
    answer.fingerprints.assign(IDCARD_FINGERPRINT_AREA_SIZE, UNTOUCHED);
    answer.code = KVO_ReadIDCard(KVO_PORT, &answer.info, answer.photo.data(), &answer.photoLength,
                                 answer.fingerprints.data(), &answer.fingerprintLength, 1);
    return answer;
}

void SimulatedReader::put(const char *card)
{
    char message[500] = "";
    ASSERT_EQ(idcard_simulator_put_card(card, message, sizeof message), 0) << message;
}

void SimulatedReader::set(const char *faults)
{
    char message[500] = "";
    ASSERT_EQ(idcard_simulator_set_faults(faults, message, sizeof message), 0) << message;
}

ReadAnswer readOnce()
{
    ReaderSession session;
    ReadAnswer answer;
    answer.code = session.openCode();
    if (answer.code == KVO_SUCCESS)
        answer.code = session.find();
    return answer.code == KVO_SUCCESS ? session.read() : answer;
}

std::string ucs2Text(const unsigned char *field, std::size_t size)
{
    QString text;
    for (std::size_t i = 0; i + 1 < size; i += 2) {
        const QChar character(field[i], field[i + 1]);
        if (character.isNull())
            break;
        text += character;
    }
    return text.toStdString();
}
