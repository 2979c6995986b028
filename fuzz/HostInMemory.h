// The host that tests use, made in one place: it takes a compiler seconds.
#pragma once

#include "support/FakeHost.h"

namespace tallowin::fuzz {

/// One for each process.
[[nodiscard]] test::FakeHost& HostInMemory();

/// A folder of this process alone, in the place that TMPDIR names. Gone at the end of the process,
/// but for one that ends by a finding.
[[nodiscard]] const std::string& TemporaryFolder();

}  // namespace tallowin::fuzz
