#include "report/ReportPage.h"

#include "output/Json.h"
#include "report/ReportParts.h"
#include "text/Unguessable.h"

#include <ostream>

namespace cimhttp {

namespace {

void ReplaceAll(std::string& text, std::string_view mark, std::string_view replacement) {
    for (auto place = text.find(mark); place != std::string::npos;
         place = text.find(mark, place + replacement.size())) {
        text.replace(place, mark.size(), replacement);
    }
}

std::string Head(const std::string& nonce) {
    std::string head = ReportHeadText();
    ReplaceAll(head, "@nonce@", nonce);
    ReplaceAll(head, "@style@", ReportStyleText());
    return head;
}

std::string FaultJson(const ReportFacts::Fault& fault) {
    return JsonObject()
        .Add("state", JsonText(fault.state))
        .Add("class", JsonText(fault.className))
        .Add("path", JsonText(fault.path))
        .Add("name", JsonText(fault.name))
        .Add("faults", JsonText(fault.text))
        .Text();
}

std::string FactsJson(const ReportFacts& facts) {
    return JsonObject()
        .Add("collected", JsonText(facts.collected))
        .Add("program", JsonText(facts.program))
        .Add("telling", std::to_string(facts.telling))
        .Add("health", JsonArray(facts.faults, FaultJson))
        .Add("losses", JsonTexts(facts.losses))
        .Text();
}

} // namespace

ReportPage::ReportPage(std::ostream& output) : output_(output), nonce_(UnguessableText()) { output_ << Head(nonce_); }

void ReportPage::Append(std::string_view json) { output_ << document_.Take(json); }

void ReportPage::End(const ReportFacts& facts) {
    output_ << document_.End() << "</script>\n<script type=\"application/json\" id=\"about\">\n"
            << EmbeddedJson().Take(FactsJson(facts)) << "\n</script>\n<script nonce=\"" << nonce_ << "\">\n"
            << ReportScriptText() << "</script>\n</body>\n</html>\n";
}

} // namespace cimhttp
