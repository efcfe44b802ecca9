#pragma once

#include <simulator/ReplyShape.h>
#include <simulator/StationReading.h>

#include <vector>

namespace Varnel::Simulator {

/// The part of the station list that a request asks for.
struct ListPage {
    int index = 1; ///< counted from 1
    int size = 20;
};

/// The data of the portal's station list; "record" counts all stations, whatever the page shows.
JSON portalStationList(const std::vector<StationReading>& readings, ListPage page, UnitStyle units);

/// The data of the token API's station list.
JSON tokenStationList(const std::vector<StationReading>& readings, ListPage page, UnitStyle units);

} // namespace Varnel::Simulator
