// What calls cost that are not long vectors of usual elements.
#pragma once
#include <map>
#include <string>

#include "functions/list.hpp"

// Rows of Markdown tables by kernel.
using Rows = std::map<std::string, std::string>;

// Cycles of a call with few elements, aligned and not, beside SLEEF.
extern const char* const kShortCallsHead;
Rows short_calls(const orx::Function& f);

// Cycles per element of vectors that are all zeros, denormals, infinities, huge, ..., or all in error.
extern const char* const kUnusualHead;
Rows unusual_elements(const orx::Function& f);
