/// The part of the accounts' section that wants a machine that can be taken off the network.
#ifndef HOSTKIT_TOUR_CACHES_H
#define HOSTKIT_TOUR_CACHES_H

#include "tour.h"

void tourCaches(TourPage& page);

#endif
