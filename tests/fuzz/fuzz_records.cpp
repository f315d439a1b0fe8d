// SPDX-License-Identifier: GPL-3.0-or-later
// libFuzzer target for the record-file loaders: any bytes must decode to records or to an error,
// never crash, and whatever decodes must encode to a file that decodes to the same thing again.
#include "core/records/ConfusionLogStore.h"
#include "core/records/ReviewDeckStore.h"
#include "core/records/UsageEventStore.h"

#include <cstdint>
#include <cstdlib>

using namespace tolvane;

namespace {

// Encoding normalises once (dates to milliseconds, unpaired surrogates to replacement characters);
// from then on a file must survive reading and writing unchanged.
template <typename Decode, typename Encode> void roundTrip(const QByteArray& bytes, Decode decode, Encode encode)
{
    const auto first = decode(bytes);
    if (!first.ok())
        return;
    const QByteArray written = encode(first.value());
    const auto second = decode(written);
    if (!second.ok() || encode(second.value()) != written)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(data), qsizetype(size));
    const QDateTime readingTime(QDate(2026, 3, 2), QTime(9, 0), Qt::UTC);
    roundTrip(bytes, &UsageEventStore::decode, &UsageEventStore::encode);
    roundTrip(bytes, &ConfusionLogStore::decode, &ConfusionLogStore::encode);
    roundTrip(
        bytes, [&](const QByteArray& json) { return ReviewDeckStore::decode(json, readingTime); },
        &ReviewDeckStore::encode);
    return 0;
}
