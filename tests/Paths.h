// Where the tests find what they read. Only Paths.cpp is compiled with these places, so that ccache serves every
// checkout.
#pragma once

extern const char casesDir[];
extern const char samplesDir[];
extern const char corpusDir[]; ///< real movies; may be missing
extern const char zelkcPath[]; ///< empty when zelkc is not built
