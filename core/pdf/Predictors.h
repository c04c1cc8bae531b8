// Undoing the predictors of Flate and LZW data (ISO 32000-2, 7.4.4.4).
#pragma once

#include "pdf/StreamFilters.h"

namespace quillmark::PDF {

/// Turns predicted data into the data themselves, in place. False when the parameters make no
/// sense. A last row that is cut short is kept as far as it goes.
[[nodiscard]] bool undoPredictor(const Predictor& predictor, Bytes& data);

} // namespace quillmark::PDF
