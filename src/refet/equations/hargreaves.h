// SPDX-License-Identifier: MIT
#pragma once

namespace velmora {

// Hargreaves and Samani (1985): ET = 0.0023 (Tmax - Tmin)^0.5 (T + 17.8) Ra / lambda, mm of a day,
// with the latent heat lambda of the mean temperature. 0 when Tmax is below Tmin. Throws
// EquationError.
double hargreaves1985(double Tmax, double Tmin, double Ra);

}  // namespace velmora
