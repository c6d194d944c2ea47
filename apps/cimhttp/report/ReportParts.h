#pragma once

namespace cimhttp {

// The files of this folder that a page is made of.

const char* ReportHeadText();
const char* ReportStyleText();
const char* ReportScriptText();

} // namespace cimhttp
