#include "InstancesCommand.h"

#include <algorithm>
#include <functional>
#include <ostream>
#include <vector>

#include "DisplayText.h"
#include "Failure.h"
#include "Options.h"
#include "Session.h"
#include "TextTable.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"
#include "host/TVYXException.h"

namespace cimhttp {

namespace {

using namespace NQORVYX20;
using ECIMType = TCIMValue::TCIMType::ECIMType;

using Instances = std::vector<boost::shared_ptr<ICIMInstance>>;

/// How the value of a property becomes the text of a cell.
using CellText = std::function<std::string(const ICIMProperty&)>;

struct Column {
    std::string name;
    bool is_number = false; ///< also of a number with a unit
    bool is_mapped = false; ///< a value map gives texts for its values
};

bool IsNumber(TCIMValue::TCIMType type) { return type >= ECIMType::eCIMUint8 && type <= ECIMType::eCIMReal64; }

Column ColumnOf(const ICIMPropertyDecl& property) {
    bool is_mapped = false;
    property.GetQualifier("ValueMap", is_mapped, TCIMContext());
    return {property.GetName(TCIMContext()), IsNumber(property.GetType(TCIMContext())), is_mapped};
}

/// The properties of a class, keys first.
std::vector<Column> AllColumns(const ICIMClass& cls) {
    std::vector<std::string> keys;
    cls.EnumerateKeyNames(
        [&](const std::string* name) {
            keys.push_back(*name);
            return true;
        },
        TCIMContext());
    std::vector<Column> columns;
    cls.EnumeratePropertyDecls(
        [&](const boost::shared_ptr<ICIMPropertyDecl>& property) {
            columns.push_back(ColumnOf(*property));
            return true;
        },
        TCIMContext());
    std::stable_partition(columns.begin(), columns.end(), [&](const Column& column) {
        return std::find(keys.begin(), keys.end(), column.name) != keys.end();
    });
    return columns;
}

std::vector<Column> ChosenColumns(const ICIMClass& cls, const std::vector<std::string>& names) {
    std::vector<Column> columns;
    for (const std::string& name : names) {
        boost::shared_ptr<ICIMPropertyDecl> property;
        try {
            property = cls.GetPropertyDecl(name, TCIMContext());
        } catch (const TVYXException&) {
            // not even the form of a name
        }
        if (!property) {
            throw Failure(Failure::kUsage, "the class " + cls.GetName(TCIMContext()) + " has no property " + name);
        }
        columns.push_back(ColumnOf(*property));
    }
    return columns;
}

CellText MakeCellText(const Session& session, bool is_raw) {
    if (is_raw) {
        return [](const ICIMProperty& property) { return property.GetValue(TCIMContext()).ToString(10); };
    }
    return [&access = session.LoadedPlugin().Access()](const ICIMProperty& property) {
        return DisplayText(access, property).Joined();
    };
}

std::vector<std::string> Cells(const Instances& instances, const std::string& name, const CellText& text) {
    std::vector<std::string> cells;
    cells.reserve(instances.size());
    for (const auto& instance : instances) {
        cells.push_back(text(*instance->GetProperty(name, TCIMContext())));
    }
    return cells;
}

/// Null, or a text without characters, in every instance.
bool IsEmpty(const Instances& instances, const std::string& name) {
    return std::all_of(instances.begin(), instances.end(), [&](const auto& instance) {
        return instance->GetProperty(name, TCIMContext())->GetValue(TCIMContext()).ToString(10).empty();
    });
}

TextTable MakeTable(const Instances& instances, const std::vector<Column>& columns, bool leaves_out_empty, bool is_raw,
                    const CellText& text) {
    TextTable table;
    for (const Column& column : columns) {
        if (leaves_out_empty && IsEmpty(instances, column.name)) {
            continue;
        }
        const bool is_right = column.is_number && (is_raw || !column.is_mapped);
        table.AddColumn(column.name, is_right ? TextTable::Align::kRight : TextTable::Align::kLeft,
                        Cells(instances, column.name, text));
    }
    return table;
}

void WriteLists(const TextTable& table, std::ostream& output) {
    for (std::size_t row = 0; row < table.RowCount(); ++row) {
        output << (row == 0 ? "" : "\n");
        table.WriteRowAsList(row, output);
    }
}

} // namespace

CommandDescription InstancesCommand::Describe() {
    return {"instances",
            "Show the instances of a class",
            {{"NAME", "The class", true, &name_}},
            {{"--property", "NAME", "Show only this property; may be given several times", &properties_},
             {"--deep", "", "Include the instances of subclasses", &deep_},
             {"--raw", "", "Show values as they are, not by their value maps and units", &raw_}},
            {},
            {}};
}

int InstancesCommand::Run(const CommandContext& context) {
    Session session = context.Connect();
    const auto cls = session.Class(name_);
    const auto columns = properties_.empty() ? AllColumns(*cls) : ChosenColumns(*cls, properties_);
    const auto instances = session.Instances(*cls, deep_);
    if (instances.empty()) {
        context.output << "no instances\n";
        return 0;
    }
    const TextTable table = MakeTable(instances, columns, properties_.empty(), raw_, MakeCellText(session, raw_));
    if (context.options.width == 0 || table.Width() <= context.options.width) {
        table.Write(context.output);
    } else {
        WriteLists(table, context.output);
    }
    return 0;
}

} // namespace cimhttp
