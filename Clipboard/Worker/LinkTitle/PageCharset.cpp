#include "PageCharset.h"

#include <QList>
#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <string_view>

namespace Clipboard {

namespace {

using namespace std::string_view_literals;

struct Encoding
{
    std::string_view name;   ///< as QStringDecoder knows it
    std::string_view labels; ///< as pages name it, lower case, separated and surrounded by blanks
};

constexpr std::array encodings{
    Encoding{"UTF-8"sv, " utf-8 utf8 unicode-1-1-utf-8 unicode11utf8 unicode20utf8 x-unicode20utf8 "sv},
    Encoding{"windows-1252"sv, " windows-1252 cp1252 x-cp1252 iso-8859-1 iso8859-1 iso88591 iso_8859-1 "
                               "iso_8859-1:1987 latin1 l1 ascii us-ascii ansi_x3.4-1968 cp819 ibm819 csisolatin1 "
                               "iso-ir-100 "sv},
    Encoding{"ISO-8859-2"sv, " iso-8859-2 iso8859-2 iso88592 iso_8859-2 iso_8859-2:1987 latin2 l2 csisolatin2 "
                             "iso-ir-101 "sv},
    Encoding{"ISO-8859-3"sv, " iso-8859-3 iso8859-3 iso88593 iso_8859-3 iso_8859-3:1988 latin3 l3 csisolatin3 "
                             "iso-ir-109 "sv},
    Encoding{"ISO-8859-4"sv, " iso-8859-4 iso8859-4 iso88594 iso_8859-4 iso_8859-4:1988 latin4 l4 csisolatin4 "
                             "iso-ir-110 "sv},
    Encoding{"ISO-8859-5"sv, " iso-8859-5 iso8859-5 iso88595 iso_8859-5 iso_8859-5:1988 cyrillic csisolatincyrillic "
                             "iso-ir-144 "sv},
    Encoding{"ISO-8859-6"sv, " iso-8859-6 iso-8859-6-e iso-8859-6-i iso8859-6 iso88596 iso_8859-6 iso_8859-6:1987 "
                             "arabic asmo-708 ecma-114 csisolatinarabic csiso88596e csiso88596i iso-ir-127 "sv},
    Encoding{"ISO-8859-7"sv, " iso-8859-7 iso8859-7 iso88597 iso_8859-7 iso_8859-7:1987 greek greek8 sun_eu_greek "
                             "ecma-118 elot_928 csisolatingreek iso-ir-126 "sv},
    Encoding{"ISO-8859-8"sv, " iso-8859-8 iso-8859-8-e iso-8859-8-i iso8859-8 iso88598 iso_8859-8 iso_8859-8:1988 "
                             "hebrew visual logical csisolatinhebrew csiso88598e csiso88598i iso-ir-138 "sv},
    Encoding{"ISO-8859-10"sv, " iso-8859-10 iso8859-10 iso885910 latin6 l6 csisolatin6 iso-ir-157 "sv},
    Encoding{"ISO-8859-13"sv, " iso-8859-13 iso8859-13 iso885913 "sv},
    Encoding{"ISO-8859-14"sv, " iso-8859-14 iso8859-14 iso885914 "sv},
    Encoding{"ISO-8859-15"sv, " iso-8859-15 iso8859-15 iso885915 iso_8859-15 l9 csisolatin9 "sv},
    Encoding{"windows-1250"sv, " windows-1250 cp1250 x-cp1250 "sv},
    Encoding{"windows-1251"sv, " windows-1251 cp1251 x-cp1251 "sv},
    Encoding{"windows-1253"sv, " windows-1253 cp1253 x-cp1253 "sv},
    Encoding{"windows-1254"sv, " windows-1254 cp1254 x-cp1254 iso-8859-9 iso8859-9 iso88599 iso_8859-9 "
                               "iso_8859-9:1989 latin5 l5 csisolatin5 iso-ir-148 "sv},
    Encoding{"windows-1255"sv, " windows-1255 cp1255 x-cp1255 "sv},
    Encoding{"windows-1256"sv, " windows-1256 cp1256 x-cp1256 "sv},
    Encoding{"windows-1257"sv, " windows-1257 cp1257 x-cp1257 "sv},
    Encoding{"windows-1258"sv, " windows-1258 cp1258 x-cp1258 "sv},
    Encoding{"windows-874"sv, " windows-874 dos-874 iso-8859-11 iso8859-11 iso885911 tis-620 "sv},
    Encoding{"IBM866"sv, " ibm866 cp866 866 csibm866 "sv},
    Encoding{"KOI8-R"sv, " koi8-r koi8_r koi8 koi cskoi8r "sv},
    Encoding{"KOI8-U"sv, " koi8-u koi8-ru "sv},
    Encoding{"macintosh"sv, " macintosh mac x-mac-roman csmacintosh "sv},
    Encoding{"x-mac-cyrillic"sv, " x-mac-cyrillic x-mac-ukrainian "sv},
    Encoding{"GB18030"sv, " gb18030 gbk x-gbk gb2312 gb_2312 gb_2312-80 chinese csgb2312 csiso58gb231280 "
                          "iso-ir-58 "sv},
    Encoding{"Big5-HKSCS"sv, " big5 big5-hkscs cn-big5 csbig5 x-x-big5 "sv},
    Encoding{"windows-31j"sv, " shift_jis shift-jis sjis x-sjis ms_kanji ms932 windows-31j csshiftjis "sv},
    Encoding{"EUC-JP"sv, " euc-jp x-euc-jp cseucpkdfmtjapanese "sv},
    Encoding{"ISO-2022-JP"sv, " iso-2022-jp csiso2022jp "sv},
    Encoding{"windows-949"sv, " euc-kr windows-949 korean ks_c_5601-1987 ks_c_5601-1989 ksc5601 ksc_5601 cseuckr "
                              "csksc56011987 iso-ir-149 "sv},
    Encoding{"UTF-16LE"sv, " utf-16le utf-16 unicode ucs-2 iso-10646-ucs-2 unicodefeff csunicode "sv},
    Encoding{"UTF-16BE"sv, " utf-16be unicodefffe "sv},
};

struct Mark
{
    std::string_view bytes;
    std::string_view encoding;
};

constexpr std::array marks{
    Mark{"\xef\xbb\xbf"sv, "UTF-8"sv},
    Mark{"\xff\xfe"sv, "UTF-16LE"sv},
    Mark{"\xfe\xff"sv, "UTF-16BE"sv},
};

std::optional<Mark> markOf(const QByteArray& page)
{
    const auto* found = std::ranges::find_if(marks, [&](const Mark& each) { return page.startsWith(each.bytes); });
    return found == marks.end() ? std::nullopt : std::optional(*found);
}

QByteArray bytesOf(std::string_view text)
{
    return {text.data(), qsizetype(text.size())};
}

} // namespace

std::optional<QByteArray> encodingForLabel(const QByteArray& label)
{
    const QByteArray plain = label.trimmed().toLower();
    if (plain.isEmpty() || plain.simplified().contains(' '))
        return {};
    const QByteArray wanted = ' ' + plain + ' ';
    const auto* found = std::ranges::find_if(encodings, [&](const Encoding& encoding) {
        return encoding.labels.find(std::string_view(wanted.data(), size_t(wanted.size()))) != std::string_view::npos;
    });
    return found == encodings.end() ? std::nullopt : std::optional(bytesOf(found->name));
}

std::optional<QByteArray> charsetParameter(const QByteArray& contentType)
{
    const QByteArray lower = contentType.toLower();
    for (qsizetype at = lower.indexOf("charset"); at >= 0; at = lower.indexOf("charset", at + 1)) {
        QByteArray value = lower.mid(at + qsizetype("charset"sv.size())).trimmed();
        if (!value.startsWith('='))
            continue;
        value = value.mid(1).trimmed();
        if (value.startsWith('"') || value.startsWith('\'')) {
            const qsizetype end = value.indexOf(value.front(), 1);
            return end < 0 ? std::nullopt : std::optional(value.mid(1, end - 1));
        }
        const auto isEnd = [](char c) { return c == ';' || c == ',' || c == ' ' || c == '\t'; };
        const auto end = std::ranges::find_if(std::as_const(value), isEnd);
        return value.first(end - value.cbegin());
    }
    return {};
}

std::optional<QByteArray> encodingFromOutside(const QByteArray& page, const QByteArray& contentType)
{
    if (const std::optional<Mark> mark = markOf(page))
        return bytesOf(mark->encoding);
    const std::optional<QByteArray> label = charsetParameter(contentType);
    return label ? encodingForLabel(*label) : std::nullopt;
}

QByteArray guessedEncoding(const QByteArray& page)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder.decode(page);
    return decoder.hasError() ? "windows-1252" : "UTF-8";
}

QString decodedPage(const QByteArray& page, const QByteArray& encoding)
{
    const std::optional<Mark> mark = markOf(page);
    QStringDecoder decoder(encoding.constData());
    return decoder.decode(QByteArrayView(page).sliced(mark ? qsizetype(mark->bytes.size()) : 0));
}

} // namespace Clipboard
