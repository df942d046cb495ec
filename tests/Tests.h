// What the tests share: the framework, the libraries' main headers, cases, movies made by hand. Compiled once.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "CaseFile.h"
#include "Conversion.h"
#include "Paths.h"
#include "SwfAllTags.h"
#include "SwfMovie.h"
#include "SwfUtils.h"
#include "SwfWarnings.h"
#include "TagBody.h"

namespace fs = std::filesystem;
