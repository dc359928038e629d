// Fuzz target: a byte string decoded into a sequence of public model builder
// calls (adds, finds, binds, properties, resolution) with arbitrary names and
// small identifiers, so that calls meet the objects earlier calls made.
#include <cstddef>
#include <cstdint>
#include <string>

#include <VrnIntf.h>

namespace {

class CFuzzBuilder : public CVrnAPI {
public:
    using CVrnAPI::BindObject;
    using CVrnAPI::DeleteForeignKey;
    using CVrnAPI::UpdateRelationships;
    using CVrnAPI::WriteModel;
};

class CReader {
public:
    CReader(const std::uint8_t* data, std::size_t size) : m_data(data), m_size(size) {}
    bool AtEnd() const { return m_at >= m_size; }
    std::uint8_t Byte() { return m_at < m_size ? m_data[m_at++] : 0; }
    unsigned long Id() { return Byte() % 12; }
    long Value() { return static_cast<std::int8_t>(Byte()); }
    // A name: one of a few common ones, or up to 15 raw bytes (null now and then).
    const char* Name() {
        static const char* const kNames[] = {"T", "A", "B", "ID", "dbo.T.A", "[T].[A]", "N'r'", "int",
                                             "varchar(10)", "decimal(5,2)", "UNKNOWN", ""};
        const std::uint8_t pick = Byte();
        if (pick < 200) return kNames[pick % 12];
        if (pick == 255) return nullptr;
        const std::size_t length = Byte() % 16;
        m_text.assign(reinterpret_cast<const char*>(m_data + std::min(m_at, m_size)),
                      std::min(length, m_size - std::min(m_at, m_size)));
        m_at += length;
        return m_text.c_str();
    }

private:
    const std::uint8_t* m_data;
    std::size_t m_size;
    std::size_t m_at = 0;
    std::string m_text;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CReader in(data, size);
    CFuzzBuilder builder;
    if (in.Byte() % 8 != 0) builder.Initialize(in.Byte() % 60, nullptr);
    unsigned long parentValue = 0;
    CStringList messages;
    for (int step = 0; step < 200 && !in.AtEnd(); ++step) {
        switch (in.Byte() % 41) {
            case 0: builder.AddEntity(in.Name(), in.Name(), 0, in.Byte() % 2); break;
            case 1: builder.AddAttribute(in.Id(), in.Name(), in.Name(), in.Value(), in.Value(), in.Byte() % 2, in.Id()); break;
            case 2: builder.AddPrimaryKey(in.Id(), in.Name()); break;
            case 3: builder.AddPrimaryKeyColumn(in.Id(), in.Name(), in.Id()); break;
            case 4: builder.AddIndex(in.Id(), in.Name()); break;
            case 5: builder.AddIndexColumn(in.Id(), in.Name(), in.Id(), in.Byte() % 2); break;
            case 6: builder.SetIndexProperty(in.Id(), in.Byte() % 60, in.Value()); break;
            case 7: builder.SetIndexStringProperty(in.Id(), in.Byte() % 60, in.Name()); break;
            case 8: builder.AddForeignKey(in.Id(), in.Id(), in.Name(), in.Name(), in.Name()); break;
            case 9: builder.AddForeignKeyColumnPair(in.Id(), in.Name(), in.Name(), in.Id()); break;
            case 10: builder.AddForeignKeyColumnPair(in.Id(), in.Id(), in.Id(), in.Byte() % 2, in.Id()); break;
            case 11: builder.SetForeignKeyProperty(in.Id(), 76 + in.Byte() % 7, in.Value()); break;
            case 12: builder.DeleteForeignKey(in.Id()); break;
            case 13: builder.ResolveForeignKeyConstraints(messages); break;
            case 14: builder.SetEntityProperty(in.Id(), in.Byte() % 80, in.Value()); break;
            case 15: builder.SetEntityStringProperty(in.Id(), in.Byte() % 80, in.Name()); break;
            case 16: builder.SetAttributeProperty(in.Id(), in.Byte() % 100, in.Value()); break;
            case 17: builder.SetAttributeStringProperty(in.Id(), in.Byte() % 100, in.Name()); break;
            case 18: builder.DeleteAttribute(in.Id(), in.Id()); break;
            case 19: builder.AddDefault(in.Name(), in.Name(), nullptr); break;
            case 20: builder.AddRule(in.Name(), in.Name(), nullptr); break;
            case 21: builder.AddUserType(in.Name(), in.Name()); break;
            case 22: builder.BindObject(in.Name(), in.Name(), in.Byte() % 2); break;
            case 23: builder.AddCheckConstraint(in.Name(), in.Name(), in.Id(), in.Name(), 0); break;
            case 24: builder.AddTrigger(in.Name(), in.Name(), in.Name(), in.Value(), in.Id()); break;
            case 25: builder.FindTrigger(in.Name(), in.Name(), parentValue); break;
            case 26: builder.AddProcedure(in.Name(), in.Name(), in.Name(), in.Value()); break;
            case 27: builder.SetTriggerInvalid(in.Id()); break;
            case 28: builder.AddPackage(in.Name(), in.Name(), in.Name(), in.Byte() % 2); break;
            case 29: builder.FindPackage(in.Name(), in.Name()); break;
            case 30: builder.AddReferencedObject(in.Id(), in.Id(), in.Id(), in.Id(), in.Byte() % 120); break;
            case 31: builder.AddTablePartition(in.Id(), in.Name()); break;
            case 32: builder.AddIndexPartition(in.Id(), in.Name()); break;
            case 33: builder.AddTablePartitionColumn(in.Id(), in.Name(), in.Value()); break;
            case 34: builder.SetPartitionProperty(in.Id(), in.Byte() % 60, in.Value()); break;
            case 35: builder.SetPartitionStringProperty(in.Id(), in.Byte() % 60, in.Name()); break;
            case 36: builder.AddStorageObject(in.Name(), in.Name(), in.Name(), in.Value()); break;
            case 37: builder.UpdateRelationships(in.Byte() % 2); break;
            case 38: builder.SetModelId(in.Id()); break;
            case 39: {
                // An attribute deleted through an entity that may not own it
                // (then that entity's attribute of the same number goes), and
                // every identifier used again: none may reach a deleted one.
                builder.DeleteAttribute(in.Id(), in.Id());
                for (unsigned long id = 1; id < 12; ++id) {
                    builder.SetAttributeStringProperty(id, 1, "RENAMED");
                    builder.SetAttributeProperty(id, 5, 1);
                }
                break;
            }
            default: builder.SetDB2SqlId(in.Name()); break;
        }
    }
    builder.UpdateRelationships(0);
    builder.WriteModel("fuzz.vrn");
    return 0;
}
