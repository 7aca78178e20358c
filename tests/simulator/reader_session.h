#pragma once

// One use of the simulated reader through its exported functions: the reader is open while the
// object lives.

#include <cstddef>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "common/card_info_struct.h"

struct ReadAnswer {
    int code = 0;
    CardInfoStruct info = {};
    std::vector<unsigned char> photo; ///< the whole buffer, prefilled with 0xEE
    unsigned int photoLength = 0;
    std::vector<unsigned char> fingerprints; ///< as the photo
    unsigned int fingerprintLength = 0;
};

class ReaderSession
{
public:
    ReaderSession();
    ~ReaderSession();
    ReaderSession(const ReaderSession &) = delete;
    ReaderSession &operator=(const ReaderSession &) = delete;

    [[nodiscard]] int openCode() const { return m_openCode; }
    int find();
    ReadAnswer read();

private:
    int m_openCode;
};

/** A test that begins and ends with a card on the reader, the resident one, and without faults. */
class SimulatedReader : public testing::Test
{
protected:
    SimulatedReader()
    {
        put("resident");
        set("");
    }
    void TearDown() override { set(""); }

    static void put(const char *card);
    static void set(const char *faults);
};

/** Opens, finds, reads, closes; the code is the first that is not success. */
ReadAnswer readOnce();

std::string ucs2Text(const unsigned char *field, std::size_t size);

/** The text of a UCS-2 field up to its first zero character, as UTF-8. */
template <std::size_t size>
std::string fieldText(const unsigned char (&field)[size])
{
    return ucs2Text(field, size);
}
