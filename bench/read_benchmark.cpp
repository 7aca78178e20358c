// What readIDCard costs on a reader that answers at once, and what the parts of it cost.

#include "api/field_extraction.h"
#include "api/idcard_reader_api.h"
#include "common/closed_functions.h"
#include "common/country_code_list.h"
#include "render/tools.h"

#include <cstring>
#include <string>
#include <string_view>

#include <benchmark/benchmark.h>

#include <QGuiApplication>

namespace
{

CardInfoStruct card;

/** A record of `kind` with ideographs in every field, full to the last character. */
CardInfoStruct fullCard(CardInfoKind kind)
{
    CardInfoStruct info{};
    auto *const bytes = reinterpret_cast<unsigned char *>(&info);
    for (std::size_t i = sizeof(info.kind); i < sizeof(info); i += 2) {
        bytes[i] = static_cast<unsigned char>(i / 2);
        bytes[i + 1] = 0x4e;
    }
    std::memcpy(info.nationality, "U\0S\0A\0", sizeof(info.nationality));
    std::memcpy(info.hmt.id, "8\0001\0", 4); // a permit that has a back
    info.kind = kind;
    return info;
}

struct Outputs {
    unsigned int kind = 0;
    _tagIDCARD_INFO_ALL_CN cn{};
    _tagIDCARD_INFO_ALL_FOREIGN_2017 f2017{};
    _tagIDCARD_INFO_ALL_FOREIGN_NEW fNew{};
    _tagIDCARD_INFO_ALL_HMT hmt{};
    std::string front;
    std::string back;
};

void readCard(benchmark::State &state, CardInfoKind kind)
{
    static Outputs out;
    card = fullCard(kind);
    while (state.KeepRunning()) {
        const int result =
            readIDCard(&out.kind, &out.cn, &out.f2017, &out.fNew, &out.hmt, &out.front, &out.back);
        if (result != IDCARD_RESULT_OK) {
            state.SkipWithError("the read failed");
            break;
        }
        benchmark::DoNotOptimize(out);
    }
}

template <typename Record, CardInfoKind kind>
void extractRecord(benchmark::State &state)
{
    static Record record{};
    CardInfoStruct info = fullCard(kind);
    while (state.KeepRunning()) {
        extractFields(info, record);
        benchmark::DoNotOptimize(record);
    }
}

void lookUpCountry(benchmark::State &state, const char *code)
{
    while (state.KeepRunning())
        benchmark::DoNotOptimize(Tools::convertNationCodeToName(code));
}

} // namespace

int KVO_OpenPort(int)
{
    return KVO_SUCCESS;
}

int KVO_FindIDCard(int)
{
    return KVO_SUCCESS;
}

int KVO_ReadIDCard(int, CardInfoStruct *info, unsigned char *, unsigned int *photoLen,
                   unsigned char *, unsigned int *fpLen, int)
{
    *info = card;
    *photoLen = IDCARD_PHOTO_SIZE;
    *fpLen = IDCARD_FINGERPRINT_AREA_SIZE;
    return KVO_SUCCESS;
}

int KVO_ClosePort(int)
{
    return KVO_SUCCESS;
}

int unpack(unsigned char *, unsigned char *, int)
{
    return WLT_SUCCESS;
}

BENCHMARK_CAPTURE(readCard, resident, CARD_INFO_KIND_CN);
BENCHMARK_CAPTURE(readCard, hmt, CARD_INFO_KIND_HMT);
BENCHMARK_CAPTURE(readCard, foreign_2017, CARD_INFO_KIND_FOREIGN_2017);
BENCHMARK_CAPTURE(readCard, foreign_new, CARD_INFO_KIND_FOREIGN_NEW);

BENCHMARK_TEMPLATE(extractRecord, _tagIDCARD_INFO_ALL_CN, CARD_INFO_KIND_CN);
BENCHMARK_TEMPLATE(extractRecord, _tagIDCARD_INFO_ALL_HMT, CARD_INFO_KIND_HMT);
BENCHMARK_TEMPLATE(extractRecord, _tagIDCARD_INFO_ALL_FOREIGN_2017, CARD_INFO_KIND_FOREIGN_2017);
BENCHMARK_TEMPLATE(extractRecord, _tagIDCARD_INFO_ALL_FOREIGN_NEW, CARD_INFO_KIND_FOREIGN_NEW);

BENCHMARK_CAPTURE(lookUpCountry, first_row, "AFG");
BENCHMARK_CAPTURE(lookUpCountry, last_row, "ZWE");
BENCHMARK_CAPTURE(lookUpCountry, unknown, "XXX");

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
