// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "query/execution/RowWalk.h"
#include "query/execution/plan/NumberChain.h"
#include "query/execution/plan/NumberSteps.h"
#include "query/execution/plan/Program.h"
#include "query/execution/plan/TextLookup.h"
#include "query/execution/plan/TruthSteps.h"

#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace query::plan {

/// What a theme's rows are, for the choice of steps.
struct PlanExtent {
    int entityCount = 0;
    int rowCount = 0; ///< Rows that entities use lie before this one.
};

/// Makes a program of a filter's tree: the same answers for every row, failures included.
/// Errors: false where the tree has something that programs cannot express, or the host does not
/// give a column; the filter is then to be walked.
class Compiler final {
public:
    Compiler(const QuerySource& source, gis::IColumns& columns, PlanExtent extent);
    [[nodiscard]] bool compile(CEEExpression& filter, Program& program);

private:
    /// What a subtree gives; only constants are left in the tree, to be computed when needed.
    struct Operand {
        enum class Kind { Constant, Column, Chain, Number, Truth };
        Kind kind = Kind::Constant;
        CEEExpression* node = nullptr; ///< A constant's.
        int index = 0; ///< Column (also a chain's) or register.
        NumberChain chain;
    };
    enum class ValueType { Number, Text, Date, Boolean, None };
    struct Constant {
        bool isFailed = false;
        orv::CPolyValue value;
    };

    void visit(CEEExpression& root);
    void beforeRightSide(CEEExpression& node);
    void finish(CEEExpression& node);
    void finishVariable(CEEExpressionVar& node);
    void finishLike(CExpressionLike& node);
    void finishCall(CEEExpressionFun& node);
    void finishDatePart(int code);
    void finishBinary(CEEExpressionBinOp& node);
    void finishConnective(Connective connective);
    void calculate(int code, Operand left, Operand right);
    void calculateInRegister(int code, Operand left, Operand right);
    void compare(int code, Operand left, Operand right);
    void compareWithConstant(int code, Operand left, const orv::CPolyValue& constant);
    void compareNumber(int code, Operand left, double constant);
    void compareText(int column, TextCondition condition, IfMissing ifMissing);
    void compareColumns(int code, const Operand& left, const Operand& right, ValueType type);
    void mismatch(Operand& left, Operand& right, bool isNumber);

    [[nodiscard]] static Operand constant(CEEExpression& node);
    [[nodiscard]] std::optional<int> fieldIndexOf(orv::String name) const;
    [[nodiscard]] int columnOf(int fieldIndex);
    [[nodiscard]] Constant computed(const Operand& operand);
    [[nodiscard]] ValueType typeOf(const Operand& operand);
    [[nodiscard]] static ValueType typeOf(const orv::CPolyValue& value);
    [[nodiscard]] bool isNumberColumn(const Operand& operand) const;
    [[nodiscard]] PresenceSource presenceOf(Operand& operand);
    [[nodiscard]] int truthOf(const Operand& operand);
    [[nodiscard]] int numberOf(Operand& operand);
    [[nodiscard]] FixedTruth fixedTruthOf(const Operand& operand);

    template <typename Step, typename... Arguments> void add(Arguments&&... arguments)
    {
        m_program->steps.push_back(std::make_unique<Step>(std::forward<Arguments>(arguments)...));
    }
    [[nodiscard]] Operand pop();
    void push(Operand operand);
    void pushTruth(int index);
    void pushNumber(int index);
    [[nodiscard]] int takeTruth();
    [[nodiscard]] int takeNumber();
    void release(const Operand& operand);
    void refuse() { m_isSupported = false; }

    const QuerySource& m_source;
    gis::IColumns& m_hostColumns;
    PlanExtent m_extent;
    Program* m_program = nullptr;
    bool m_isSupported = true;
    std::vector<Operand> m_operands;
    std::vector<SkipStep*> m_openSkips; ///< Connectives whose right side is under way.
    std::vector<int> m_freeTruths;
    std::vector<int> m_freeNumbers;
    std::map<int, int> m_columnByField;
    TextLookup m_texts;
};

} // namespace query::plan
