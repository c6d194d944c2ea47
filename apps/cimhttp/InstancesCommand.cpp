#include "InstancesCommand.h"

#include <algorithm>
#include <ostream>
#include <vector>

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

struct Column {
    std::string name;
    bool is_number = false;
};

bool IsNumber(TCIMValue::TCIMType type) { return type >= ECIMType::eCIMUint8 && type <= ECIMType::eCIMReal64; }

Column ColumnOf(const ICIMPropertyDecl& property) {
    return {property.GetName(TCIMContext()), IsNumber(property.GetType(TCIMContext()))};
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

std::string Text(const ICIMInstance& instance, const std::string& property) {
    return instance.GetProperty(property, TCIMContext())->GetValue(TCIMContext()).ToString(10);
}

std::vector<std::string> Cells(const std::vector<boost::shared_ptr<ICIMInstance>>& instances, const std::string& name) {
    std::vector<std::string> cells;
    cells.reserve(instances.size());
    for (const auto& instance : instances) {
        cells.push_back(Text(*instance, name));
    }
    return cells;
}

TextTable MakeTable(const std::vector<boost::shared_ptr<ICIMInstance>>& instances, const std::vector<Column>& columns,
                    bool keep_empty_columns) {
    TextTable table;
    for (const Column& column : columns) {
        auto cells = Cells(instances, column.name);
        const bool is_empty = std::all_of(cells.begin(), cells.end(), [](const auto& cell) { return cell.empty(); });
        if (keep_empty_columns || !is_empty) {
            table.AddColumn(column.name, column.is_number ? TextTable::Align::kRight : TextTable::Align::kLeft,
                            std::move(cells));
        }
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

void RunInstancesCommand(Session& session, const Options& options, std::ostream& output) {
    const auto cls = session.Class(options.name);
    const bool is_chosen = !options.properties.empty();
    const auto columns = is_chosen ? ChosenColumns(*cls, options.properties) : AllColumns(*cls);
    const auto instances = session.Instances(*cls, options.deep);
    if (instances.empty()) {
        output << "no instances\n";
        return;
    }
    const TextTable table = MakeTable(instances, columns, is_chosen);
    if (table.Width() <= options.width) {
        table.Write(output);
    } else {
        WriteLists(table, output);
    }
}

} // namespace cimhttp
