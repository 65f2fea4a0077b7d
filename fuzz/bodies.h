#ifndef FUZZ_BODIES_H
#define FUZZ_BODIES_H

#include "model/graphbody.h"

/// The ports, nodes and connections are the same, in the same order; positions to the bit.
bool AreEqual(embeddedhost::GraphBody const& left, embeddedhost::GraphBody const& right);

#endif
