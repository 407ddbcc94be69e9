// SPDX-License-Identifier: MIT
#include "precip/precipitation_rules.h"

#include "settings/run_choices.h"

namespace velmora {

namespace {

SurfaceRecipe kriged() {
    SurfaceRecipe recipe;
    recipe.quantity = "P_";
    recipe.grid = "PPT_";
    recipe.unit = "inches per month";
    recipe.estimator = Estimator::kriging;
    recipe.zerosCount = true;
    return recipe;
}

}  // namespace

const SurfaceRecipe& detrendedPrecipitation() {
    static const SurfaceRecipe recipe = [] {
        SurfaceRecipe edk = kriged();
        edk.range = {0, 1000};
        edk.treatment = Treatment::detrended;
        edk.variable = "P";
        edk.notNegative = true;
        return edk;
    }();
    return recipe;
}

const SurfaceRecipe& referencedPrecipitation() {
    static const SurfaceRecipe recipe = [] {
        SurfaceRecipe prism = kriged();
        prism.range = {0, 1000, true};
        prism.treatment = Treatment::ratio;
        prism.variable = "RefPPT";
        prism.referenceScale = 2540;  // hundredths of a millimetre in an inch
        prism.referenceRaster = "SfcPPT";
        return prism;
    }();
    return recipe;
}

const SurfaceRecipe* precipitationRecipe(const RunSettings& settings) {
    const PrecipitationMethod method = precipitationMethod(settings);
    if (method == PrecipitationMethod::detrended) return &detrendedPrecipitation();
    if (method == PrecipitationMethod::reference) return &referencedPrecipitation();
    return nullptr;
}

}  // namespace velmora
