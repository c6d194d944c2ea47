#include "operations/QualifierOperations.h"

namespace demo {

namespace {

void GetQualifier(const Repository& repository, const Parameters& parameters, XmlWriter& writer) {
    const std::string name = parameters.Name("QualifierName");
    const QualifierDeclaration* const found = repository.GetSchema().FindQualifier(name);
    if (!found) {
        throw CimError(CimStatus::kNotFound, "there is no qualifier " + name);
    }
    writer.Start("IRETURNVALUE");
    WriteQualifierDeclaration(writer, *found);
    writer.End();
}

void EnumerateQualifiers(const Repository& repository, const Parameters& /*has none*/, XmlWriter& writer) {
    writer.Start("IRETURNVALUE");
    for (const QualifierDeclaration* const found : repository.GetSchema().Qualifiers()) {
        WriteQualifierDeclaration(writer, *found);
    }
    writer.End();
}

} // namespace

Operations QualifierOperations() {
    return {{"GetQualifier", {RequiredParameter("QualifierName", ParameterKind::kText)}, &GetQualifier},
            {"EnumerateQualifiers", {}, &EnumerateQualifiers}};
}

} // namespace demo
