#ifndef FUZZ_REQUIRE_H
#define FUZZ_REQUIRE_H

#include <string>

/// Ends the program, so that the fuzzer keeps the input, unless the property holds.
void Require(bool holds, std::string const& property);

/// From now on a warning of the toolkit breaks a property, too.
void RequireNoWarnings();

#endif
