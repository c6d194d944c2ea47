#pragma once

#include <map>
#include <string>
#include <vector>

/// What a reader of MOF that shares nothing with the program makes of a class declaration (DSP0004 annex A).
struct MofFeature {
    std::string type; ///< `CIM_System REF` for a reference
    std::string name;
    bool isArray = false;
    std::map<std::string, std::string> qualifiers; ///< the values of strings, joined and without escapes
};

struct MofClass {
    std::string name;
    std::string superclass;
    std::vector<MofFeature> properties;
    std::vector<MofFeature> methods;
};

/// Reads one class declaration and nothing behind it. Throws std::runtime_error where the text is not MOF.
MofClass ReadMofClass(const std::string& text);
