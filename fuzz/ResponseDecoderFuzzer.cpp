// A server's answer, as bytes of the body: whatever they are, and however they arrive, decoding them ends in the same
// objects or in the same documented exception. So it is when they are read leniently, which is the same as strictly
// where that accepts them.

#include "Cost.h"
#include "CutInput.h"
#include "Description.h"
#include "Require.h"
#include "cimxml/Findings.h"
#include "cimxml/ResponseDecoder.h"

#include <string>

using namespace Pegasus;

namespace {

struct DescribingSink : cimxml::ReturnValueSink {
    void onClass(const CIMClass& cimClass) override { description.Add(cimClass); }
    void onInstance(const CIMInstance& instance) override { description.Add(instance); }
    void onObject(const CIMObject& object) override { description.Add(object); }
    void onClassName(const CIMName& name) override { description.Add(name); }
    void onInstanceName(const CIMObjectPath& name) override { description.Add(name); }
    void onObjectPath(const CIMObjectPath& path) override { description.Add(path); }
    void onQualifierDecl(const CIMQualifierDecl& declaration) override { description.Add(declaration); }
    void onInstancePath(const CIMObjectPath& path) override { description.Add(path); }
    void onValueText(const String& text) override { description.Add(CIMValue(text)); }
    void onOutputText(const String& /*name*/, const String& text) override { description.Add(CIMValue(text)); }
    void onOutputClass(const String& /*name*/, const CIMClass& cimClass) override { description.Add(cimClass); }

    Description description;
};

void Feed(cimxml::ResponseDecoder& decoder, Pieces pieces) {
    for (auto piece = pieces.Next(); !piece.empty(); piece = pieces.Next()) {
        decoder.feed(piece);
    }
    decoder.finish();
}

/// What decoding ends in: the kind of the exception, or else the objects. The server's own error comes behind them.
/// With findings it is lenient.
std::string Outcome(Pieces pieces, cimxml::Findings* findings = nullptr) {
    DescribingSink sink;
    cimxml::ResponseDecoder decoder("1001", "EnumerateInstances", sink, nullptr, {}, nullptr, findings);
    try {
        Feed(decoder, pieces);
    } catch (const CIMClientXmlException& exception) {
        Require(!exception.getMessage().empty(), "an error says what is wrong");
        return "CIMClientXmlException";
    } catch (const CIMClientResponseException& exception) {
        Require(!exception.getMessage().empty(), "an error says what is wrong");
        return "CIMClientResponseException";
    } catch (const CIMException& exception) {
        Require(exception.getCode() != CIM_ERR_SUCCESS, "success is no error");
        return sink.description.Text() + std::string(exception.getMessage().view());
    }
    return sink.description.Text();
}

bool IsRefused(const std::string& outcome) {
    return outcome == "CIMClientXmlException" || outcome == "CIMClientResponseException";
}

std::string TextOf(const LenientFindings& findings) {
    std::string text = std::to_string(findings.total);
    for (const LenientFinding& finding : findings.first) {
        text += '\n' + std::to_string(finding.kind) + ' ' + std::to_string(finding.offset);
        for (const String& part : {finding.className, finding.path, finding.element, finding.text, finding.reason}) {
            text.append(" ").append(part.view());
        }
    }
    return text;
}

void CheckLenient(const CutInput& input, const std::string& strict) {
    cimxml::Findings wholes;
    cimxml::Findings cuts;
    const std::string outcome = Outcome(input.Whole(), &wholes);
    Require(outcome == Outcome(input.Cut(), &cuts), "how an answer is cut does not matter where it is read leniently");
    const LenientFindings found = wholes.take();
    Require(IsRefused(outcome) || TextOf(found) == TextOf(cuts.take()), "nor is it told in another way");
    if (!IsRefused(strict)) {
        Require(outcome == strict, "what is accepted is read in one way");
        Require(found.total == 0, "what is accepted is not worth a word");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const CostGuard guard(kReaderBounds, size);
    const CutInput input(data, size);
    const std::string strict = Outcome(input.Whole());
    Require(strict == Outcome(input.Cut()), "how an answer is cut does not matter");
    CheckLenient(input, strict);
    return 0;
}
