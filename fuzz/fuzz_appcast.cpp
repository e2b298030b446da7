// Any update feed body through the appcast reader.

#include "sources/appcast.h"

using namespace lanternic;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto release = Appcast::newestRelease(
        QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size)));
    if (release && release->version.isEmpty())
        __builtin_trap();
    return 0;
}
