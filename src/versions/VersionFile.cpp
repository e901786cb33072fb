#include "versions/VersionFile.h"

#include "platform/FileDescriptor.h"
#include "platform/WholeFile.h"

#include <QDir>

#include <zlib.h>
#include <zstd.h>

#include <fcntl.h>

using namespace Qt::StringLiterals;

namespace {

const QByteArray signature = "quorvane-version";
const QString suffix = u".version"_s;
constexpr int hexadecimal = 16;
constexpr qsizetype longestHead = 16'384; // bytes

struct Head
{
    Version version;
    qsizetype textSize = 0;
    qsizetype packedSize = 0;
    qsizetype length = 0; ///< of all before the frame
};

quint32 crcOf(QByteArrayView bytes)
{
    return quint32(crc32_z(0, reinterpret_cast<const Bytef *>(bytes.data()), size_t(bytes.size())));
}

qint64 wholeBlocks(qint64 bytes)
{
    constexpr qint64 block = 4096;
    return (bytes + block - 1) / block * block;
}

QByteArray packed(const QByteArray &text)
{
    constexpr int fast = 1;
    QByteArray frame(qsizetype(ZSTD_compressBound(size_t(text.size()))), Qt::Uninitialized);
    const std::unique_ptr<ZSTD_CCtx, decltype(&ZSTD_freeCCtx)> context(ZSTD_createCCtx(), &ZSTD_freeCCtx);
    ZSTD_CCtx_setParameter(context.get(), ZSTD_c_compressionLevel, fast);
    ZSTD_CCtx_setParameter(context.get(), ZSTD_c_checksumFlag, 1);
    const size_t size = ZSTD_compress2(context.get(), frame.data(), size_t(frame.size()), text.constData(),
                                       size_t(text.size()));
    frame.truncate(ZSTD_isError(size) ? 0 : qsizetype(size));
    return frame;
}

QByteArray headOf(const Version &version, qsizetype textSize, qsizetype packedSize)
{
    QByteArray head;
    const VersionSummary &summary = version.summary;
    for (const qint64 number :
         {version.number, version.before, qint64(version.time.time_since_epoch().count()), version.clock,
          qint64(textSize), qint64(packedSize), qint64(summary.tasks), qint64(summary.added),
          qint64(summary.changed), qint64(summary.removed), qint64(summary.moved)})
        head += QByteArray::number(number) + ' ';
    head.back() = '\n';
    for (const QString &name : summary.names)
        head += name.toUtf8() + '\n';
    return signature + " 1 " + QByteArray::number(head.size()) + ' ' +
           QByteArray::number(crcOf(head), hexadecimal) + '\n' + head;
}

std::optional<Head> parse(const QByteArray &bytes)
{
    const qsizetype lineEnd = bytes.indexOf('\n') + 1;
    const QList<QByteArray> line = bytes.first(lineEnd).trimmed().split(' ');
    if (line.size() != 4 || line[0] != signature || line[1] != "1")
        return std::nullopt;
    const qsizetype size = line[2].toLongLong();
    if (size <= 0 || size > bytes.size() - lineEnd)
        return std::nullopt;
    const QByteArray head = bytes.sliced(lineEnd, size);
    QList<QByteArray> lines = head.split('\n');
    const QList<QByteArray> words = lines.takeFirst().split(' ');
    if (line[3].toUInt(nullptr, hexadecimal) != crcOf(head) || words.size() != 11)
        return std::nullopt;
    const auto number = [&words](qsizetype position) {
        return words[position].toLongLong();
    };
    Version version{.number = number(0),
                    .before = number(1),
                    .time = Instant(std::chrono::milliseconds(number(2))),
                    .clock = number(3),
                    .summary = {.tasks = number(6),
                                .added = number(7),
                                .changed = number(8),
                                .removed = number(9),
                                .moved = number(10)}};
    lines.removeLast(); // after the last line's end
    for (const QByteArray &name : lines)
        version.summary.names.append(QString::fromUtf8(name));
    return Head{.version = version, .textSize = number(4), .packedSize = number(5), .length = lineEnd + size};
}

bool writeParts(const QString &folder, Version &version, qsizetype textSize, QByteArrayView frame)
{
    QByteArray content = headOf(version, textSize, frame.size());
    content += frame;
    version.room = wholeBlocks(content.size());
    return replaceWholeFile(versionFile::pathOf(folder, version.number), content);
}

} // namespace

QString versionFile::folderIn(const QString &stateFolder)
{
    return stateFolder + u"/versions"_s;
}

QString versionFile::pathOf(const QString &folder, qint64 number)
{
    constexpr int digits = 10;
    return folder + u'/' + QString::number(number).rightJustified(digits, u'0') + suffix;
}

qint64 versionFile::numberOf(const QString &fileName)
{
    const qint64 number = fileName.endsWith(suffix) ? fileName.chopped(suffix.size()).toLongLong() : 0;
    return number > 0 && pathOf({}, number) == u'/' + fileName ? number : 0;
}

bool versionFile::write(const QString &folder, Version &version, const QByteArray &text)
{
    const QByteArray frame = packed(text);
    if (!frame.isEmpty())
        return writeParts(folder, version, text.size(), frame);
    errno = ENOMEM;
    return false;
}

bool versionFile::rewriteHead(const QString &folder, Version &version)
{
    const std::optional<QByteArray> bytes = readWholeFile(pathOf(folder, version.number));
    const std::optional<Head> head = bytes ? parse(*bytes) : std::nullopt;
    return head && writeParts(folder, version, head->textSize, QByteArrayView(*bytes).sliced(head->length));
}

std::optional<Version> versionFile::readHead(const QString &path)
{
    FileDescriptor file(path, O_RDONLY);
    QByteArray bytes(longestHead, Qt::Uninitialized);
    struct stat entry = {};
    const qsizetype size = file.isOpen() && file.stat(entry) ? file.read(bytes.data(), bytes.size()) : 0;
    bytes.truncate(std::max<qsizetype>(size, 0));
    std::optional<Head> head = parse(bytes);
    if (!head || head->length + head->packedSize != entry.st_size ||
        head->version.number != numberOf(QFileInfo(path).fileName()))
        return std::nullopt;
    head->version.room = wholeBlocks(entry.st_size);
    return head->version;
}

std::optional<QByteArray> versionFile::readText(const QString &path)
{
    const std::optional<QByteArray> bytes = readWholeFile(path);
    const std::optional<Head> head = bytes ? parse(*bytes) : std::nullopt;
    if (!head)
        return std::nullopt;
    const QByteArrayView frame = QByteArrayView(*bytes).sliced(head->length);
    if (ZSTD_getFrameContentSize(frame.data(), size_t(frame.size())) != quint64(head->textSize))
        return std::nullopt;
    QByteArray text(head->textSize, Qt::Uninitialized);
    const size_t size = ZSTD_decompress(text.data(), size_t(text.size()), frame.data(), size_t(frame.size()));
    return size == size_t(text.size()) ? std::optional(text) : std::nullopt;
}

versionFile::Listing versionFile::list(const QString &folder)
{
    Listing listing;
    for (const QString &name :
         QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name)) {
        if (name.endsWith(u".new"))
            continue; // that one is just being written
        if (const std::optional<Version> version =
                numberOf(name) > 0 ? readHead(folder + u'/' + name) : std::nullopt)
            listing.versions.append(*version);
        else
            listing.unreadable.append(name);
    }
    return listing;
}
