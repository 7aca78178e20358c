// What the decoders of the raw record cost, part by part, beside what iconv alone needs for the
// same texts. The photo decoder of the benchmark answers at once: the time is the library's own.
//
// With --instructions KIND PART|iconv it decodes once more after a warm-up, inside
// `measuredDecoding`, for scripts/check/count-decode-instructions.

#include "common/closed_functions.h"
#include "common/common.h"
#include "iddata/card_layouts.h"
#include "iddata/iddata.h"
#include "reader/reader_frames.h"

#include <array>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <iconv.h>

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>

namespace
{

/** Place of a text in the block, and how much of it is kept. */
struct Text {
    int offset;
    int size;
    int capacity;
};

template <typename Record, int count>
std::vector<Text> textsOf(const card_layouts::Layout<Record, count> &layout)
{
    std::vector<Text> texts;
    for (const auto &field : layout.fields)
        texts.push_back({field.offset, field.size, field.capacity});
    return texts;
}

/** A kind of document: one of the golden records, and the decoder of its texts. */
struct Kind {
    const char *name;
    std::vector<Text> texts;
    std::function<void(CIdData &, unsigned char *)> decode;
};

template <typename Record>
std::function<void(CIdData &, unsigned char *)> decoderOf(void (CIdData::*parse)(unsigned char *,
                                                                                 Record *))
{
    return [parse](CIdData &decoder, unsigned char *block) {
        static Record record;
        (decoder.*parse)(block, &record);
        benchmark::DoNotOptimize(record);
    };
}

const std::vector<Kind> &kinds()
{
    using namespace card_layouts;
    static const std::vector<Kind> all = {
        {"resident", textsOf(CN_LAYOUT), decoderOf(&CIdData::parseChinaIdText)},
        {"hmt-hong-kong", textsOf(HMT_LAYOUT), decoderOf(&CIdData::parseHMTIDText)},
        {"foreign-2017", textsOf(FOREIGN_2017_LAYOUT), decoderOf(&CIdData::parseForeign2017IDText)},
        {"foreign-new", textsOf(FOREIGN_NEW_LAYOUT), decoderOf(&CIdData::parseForeignNewIDText)},
    };
    return all;
}

/** One card's record, and what can be done with it. */
class Card
{
public:
    explicit Card(const Kind &kind) : m_kind(kind), m_record(recordOf(kind.name)) {}

    void kind()
    {
        ID_TYPE type{};
        m_decoder.parseIDType(at(reader_frames::TEXT_OFFSET), &type);
        benchmark::DoNotOptimize(type);
    }

    void text() { m_kind.decode(m_decoder, at(reader_frames::TEXT_OFFSET)); }

    void photo()
    {
        m_decoder.parseIDHeadImage(at(reader_frames::PHOTO_OFFSET), m_bmp.data());
        benchmark::DoNotOptimize(m_bmp);
    }

    void prints() { m_decoder.saveFpRawDataToFile(FP_INFO_TWO, at(reader_frames::PRINTS_OFFSET)); }

    /** The conversions of `text`, and nothing else. */
    void iconvOfText()
    {
        for (const Text &text : m_kind.texts) {
            std::array<char, card_layouts::MAX_CAPACITY> out{};
            convert(text, out.data());
            benchmark::DoNotOptimize(out);
        }
    }

    /** Does the part of that name; false when there is none. */
    bool part(const char *name)
    {
        for (const auto &[known, method] : PARTS) {
            if (std::strcmp(known, name) != 0)
                continue;
            (this->*method)();
            return true;
        }
        return false;
    }

    static constexpr std::pair<const char *, void (Card::*)()> PARTS[] = {
        {"kind", &Card::kind},   {"text", &Card::text},     {"iconv", &Card::iconvOfText},
        {"photo", &Card::photo}, {"prints", &Card::prints},
    };

private:
    static QByteArray recordOf(const char *name)
    {
        QFile file(QStringLiteral(IDCARD_GOLDEN_RECORDS "/%1.bin").arg(name));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("no record %s", qPrintable(file.fileName()));
        // A card without prints gets some, so that every kind can be measured alike.
        return file.readAll().leftJustified(reader_frames::READ_ANSWER_MAX_SIZE, '\0');
    }

    unsigned char *at(int offset)
    {
        return reinterpret_cast<unsigned char *>(m_record.data()) + offset;
    }

    void convert(const Text &text, char *out)
    {
        iconv_t converter = iconv_open("utf-8", "utf-16le");
        char *in = m_record.data() + reader_frames::TEXT_OFFSET + text.offset;
        auto inLeft = static_cast<std::size_t>(text.size);
        auto outLeft = static_cast<std::size_t>(text.capacity);
        iconv(converter, &in, &inLeft, &out, &outLeft);
        iconv_close(converter);
    }

    const Kind &m_kind;
    QByteArray m_record;
    CIdData m_decoder{m_record, FP_INFO_TWO};
    std::array<unsigned char, IDCARD_PHOTO_SIZE> m_bmp{};
};

void measure(benchmark::State &state, const Kind &kind, void (Card::*part)())
{
    Card card(kind);
    (card.*part)();
    while (state.KeepRunning())
        (card.*part)();
}

} // namespace

/** What is counted. */
extern "C" [[gnu::noinline]] bool measuredDecoding(const std::function<bool()> &decode)
{
    return decode();
}

namespace
{

int countInstructions(const char *kindName, const char *part)
{
    for (const Kind &kind : kinds()) {
        if (std::strcmp(kind.name, kindName) != 0)
            continue;
        Card card(kind);
        return card.part(part) && measuredDecoding([&] { return card.part(part); }) ? 0 : 2;
    }
    return 2;
}

} // namespace

int unpack(unsigned char *, unsigned char *, int)
{
    return WLT_SUCCESS;
}

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const QGuiApplication application(argc, argv);
    const QTemporaryDir folder; // for the file of the prints
    QDir::setCurrent(folder.path());
    if (argc == 4 && std::strcmp(argv[1], "--instructions") == 0)
        return countInstructions(argv[2], argv[3]);
    for (const Kind &kind : kinds())
        for (const auto &[name, part] : Card::PARTS)
            benchmark::RegisterBenchmark((std::string(kind.name) + '/' + name).c_str(), measure,
                                         std::cref(kind), part);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
