#include "InstancesCommand.h"

#include <algorithm>
#include <ostream>
#include <vector>

#include "Session.h"
#include "TextTable.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"

namespace cimhttp {

namespace {

using namespace NQORVYX20;
using ECIMType = TCIMValue::TCIMType::ECIMType;

struct Column {
    std::string name;
    bool is_number = false;
};

bool IsNumber(TCIMValue::TCIMType type) { return type >= ECIMType::eCIMUint8 && type <= ECIMType::eCIMReal64; }

/// The properties of a class, keys first.
std::vector<Column> Columns(const ICIMClass& cls) {
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
            columns.push_back({property->GetName(TCIMContext()), IsNumber(property->GetType(TCIMContext()))});
            return true;
        },
        TCIMContext());
    std::stable_partition(columns.begin(), columns.end(), [&](const Column& column) {
        return std::find(keys.begin(), keys.end(), column.name) != keys.end();
    });
    return columns;
}

std::string Text(const ICIMInstance& instance, const std::string& property) {
    return instance.GetProperty(property, TCIMContext())->GetValue(TCIMContext()).ToString(10);
}

TextTable MakeTable(const std::vector<boost::shared_ptr<ICIMInstance>>& instances, const std::vector<Column>& columns) {
    TextTable table;
    for (const Column& column : columns) {
        std::vector<std::string> cells;
        cells.reserve(instances.size());
        for (const auto& instance : instances) {
            cells.push_back(Text(*instance, column.name));
        }
        const bool is_empty = std::all_of(cells.begin(), cells.end(), [](const auto& cell) { return cell.empty(); });
        if (!is_empty) {
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

void RunInstancesCommand(Session& session, const std::string& class_name, bool deep, std::size_t width,
                         std::ostream& output) {
    const auto cls = session.Class(class_name);
    const auto instances = session.Instances(*cls, deep);
    if (instances.empty()) {
        output << "no instances\n";
        return;
    }
    const TextTable table = MakeTable(instances, Columns(*cls));
    if (table.Width() <= width) {
        table.Write(output);
    } else {
        WriteLists(table, output);
    }
}

} // namespace cimhttp
