// What every test file includes, compiled once.
#ifndef MERTU_TESTS_SUPPORT_PRELUDE_H
#define MERTU_TESTS_SUPPORT_PRELUDE_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#endif
