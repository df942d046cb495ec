#include "Paths.h"

const char casesDir[] = CASES_DIR;
const char samplesDir[] = SAMPLES_DIR;
const char corpusDir[] = CORPUS_DIR;
const char zelkcPath[] = ZELKC_PATH;
