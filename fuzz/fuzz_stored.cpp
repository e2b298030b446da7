// Stored history, health log and silences as anything may have left them: whatever decodes
// must survive being written and read back unchanged. And the input as UTF-16, lone surrogates
// and all, must be written as JSON as QJsonDocument writes it.

#include "present/jsonwriter.h"
#include "store/checkhistory.h"
#include "store/healthlog.h"
#include "store/silencestore.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <cstring>

using namespace lanternic;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray stored =
        QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size));
    if (const auto history = CheckHistory::decode(stored)) {
        const auto again = CheckHistory::decode(history->encode());
        if (!again || !(*again == *history))
            __builtin_trap();
    }
    if (const auto log = HealthLog::decode(stored)) {
        const auto again = HealthLog::decode(log->encode());
        if (!again || !(*again == *log))
            __builtin_trap();
    }
    if (const auto silences = SilenceStore::decode(stored)) {
        const auto again = SilenceStore::decode(SilenceStore::encode(*silences));
        if (!again || *again != *silences)
            __builtin_trap();
    }
    QString text(qsizetype(size / 2), Qt::Uninitialized);
    std::memcpy(text.data(), data, size_t(text.size()) * 2);
    JsonWriter out;
    out.beginArray().value(text).endArray();
    if (out.take() != QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact))
        __builtin_trap();
    return 0;
}
