#include "tour_caches.h"

// The machine at hand stays on its network, and its registry as it is.
void tourCaches(TourPage& /*page*/) {}
