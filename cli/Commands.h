// What the commands do: read and judge, and hand each list on as soon as it is there.
#pragma once

#include "cli/Console.h"
#include "cli/Environment.h"
#include "cli/FontList.h"
#include "cli/Options.h"

#include <functional>
#include <vector>

namespace quillmark::cli {

/// Where a run's lists go.
template <typename Row>
struct Receiver {
    /// Makes of a judged font what the report needs of it; called by several threads at once.
    std::function<Row(AuditRow&&)> makeRow;
    /// Takes a finished list; false when no further ones are wanted.
    std::function<bool(FontList<Row>)> take;
};

/// Runs the command that `options` names. One list per input, in the order given; an input that
/// cannot be read gives a message on the console and one of the returned errors instead. `Row` is
/// that of a report: AuditRow or TextRow.
template <typename Row>
[[nodiscard]] std::vector<InputError> execute(const Options& options,
                                              const Environment& environment, Console& console,
                                              const Receiver<Row>& receiver);

} // namespace quillmark::cli
