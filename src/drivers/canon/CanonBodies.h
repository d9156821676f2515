// The attached Canon bodies, listed one way for the driver's list and for a camera looking for
// its own body: each is opened for a moment to read its serial number, and what is found is
// written to the standard output as it has always been.
#ifndef TELVARRA_DRIVERS_CANON_CANONBODIES_H
#define TELVARRA_DRIVERS_CANON_CANONBODIES_H

#include <string>
#include <vector>

#include "drivers/canon/CanonObject.h"

namespace telvarra::canon {

struct ListedBody {
    CanonObject camera;  // the body's camera object, one reference held
    std::string serialNumber;
    std::string description;
};

struct BodyListing {
    // False when the SDK gave no list or it held no body at all.
    bool listed = false;
    // The bodies that answered with a serial number, in the SDK's order.
    std::vector<ListedBody> bodies;
};

BodyListing listBodies();

}  // namespace telvarra::canon

#endif
