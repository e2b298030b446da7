#pragma once

#include "model/sourceresult.h"

#include <QString>
#include <concepts>
#include <functional>

class QObject;

namespace lanternic::network {
class Session;
}

namespace lanternic {

using CheckCompletion = std::function<void(SourceResult)>;

// The contract of anything the store can poll. check() calls done exactly once with the
// result (failures are results too), unless context is destroyed first, which cancels it.
template<typename T>
concept HealthSource = requires(const T &source, network::Session &session, QObject *context,
                                CheckCompletion done)
{
    {
        source.id
        } -> std::convertible_to<QString>;
    {
        source.name
        } -> std::convertible_to<QString>;
    source.check(session, context, done);
};

} // namespace lanternic
