#include "NumberedItems.h"

#include "providers/InstanceProvider.h"
#include "schema/SchemaReader.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace bench {

namespace {

constexpr const char* kClass = "BENCH_Item";
constexpr const char* kSchema = R"(<CIM CIMVERSION="2.0" DTDVERSION="2.0"><DECLARATION><DECLGROUP>
<VALUE.OBJECT><QUALIFIER.DECLARATION NAME="Key" TYPE="boolean"><SCOPE PROPERTY="true"/></QUALIFIER.DECLARATION></VALUE.OBJECT>
<VALUE.OBJECT><CLASS NAME="BENCH_Item">
  <PROPERTY NAME="Id" TYPE="uint64"><QUALIFIER NAME="Key" TYPE="boolean"><VALUE>TRUE</VALUE></QUALIFIER></PROPERTY>
  <PROPERTY NAME="Name" TYPE="string"/>
  <PROPERTY NAME="Size" TYPE="uint64"/>
  <PROPERTY NAME="Ready" TYPE="boolean"/>
  <PROPERTY NAME="Created" TYPE="datetime"/>
</CLASS></VALUE.OBJECT></DECLGROUP></DECLARATION></CIM>)";

class Items : public demo::InstanceCursor {
  public:
    explicit Items(std::uint64_t count) : item_{kClass, {}}, count_(count) {
        item_.values["Created"] = demo::Value::Text("20260101000000.000000+000");
    }

    const demo::Instance* Next() override {
        if (next_ == count_) {
            return nullptr;
        }
        item_.values["Id"] = demo::Value::Number(next_);
        item_.values["Name"] = demo::Value::Text("item " + std::to_string(next_));
        item_.values["Size"] = demo::Value::Number(next_ * 512);
        item_.values["Ready"] = demo::Value::Boolean(next_ % 2 == 0);
        ++next_;
        return &item_;
    }

  private:
    demo::Instance item_;
    std::uint64_t next_ = 0;
    const std::uint64_t count_;
};

class ItemProvider : public demo::InstanceProvider {
  public:
    explicit ItemProvider(std::uint64_t count) : count_(count) {}

    std::string_view ClassName() const override { return kClass; }

    void Enumerate(const Visitor& visit) const override {
        Items items(count_);
        while (const demo::Instance* const item = items.Next()) {
            visit(*item);
        }
    }

    std::unique_ptr<demo::InstanceCursor> Open() const override { return std::make_unique<Items>(count_); }

  private:
    const std::uint64_t count_;
};

} // namespace

demo::CimService NumberedItems(std::uint64_t count) {
    demo::InstanceProviders providers;
    providers.push_back(std::make_unique<ItemProvider>(count));
    return {demo::ReadSchema(kSchema), std::move(providers), "bench.example"};
}

} // namespace bench
