// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/expr/Result.h"

#include <memory>
#include <string_view>

/// What a name stands for in an expression.
class TEMATICA_HOST_API CEESymbol {
public:
    CEESymbol() = default;
    CEESymbol(const CEESymbol&) = delete;
    CEESymbol& operator=(const CEESymbol&) = delete;
    virtual ~CEESymbol();

    /// Errors: false when the value cannot be computed from these arguments; `result` is then
    /// undefined.
    virtual bool Eval(int argumentCount, CEEResult* arguments, CEEResult& result) = 0;
    /// True for symbols that take part in calls; a variable answers false.
    [[nodiscard]] virtual bool IsFunction() const = 0;
};

/// Where nodes look names up.
class TEMATICA_HOST_API CEESymbolProvider {
public:
    /// The symbol that a plain name means: variables first, then functions; exact name first, then
    /// ASCII case ignored. Null when unknown. Owner: the provider.
    virtual CEESymbol* GetSymbol(orv::String& name) = 0;
    /// The symbol that a call means: functions only.
    virtual CEESymbol* GetFunction(orv::String& name) = 0;

protected:
    ~CEESymbolProvider();
};

/// Name to symbol, with variables and functions apart, so that a field called "Year" does not hide
/// the function. A second symbol of a name is kept alive but never found. Owner: deletes its
/// symbols with itself.
class TEMATICA_HOST_API CEESymbolTable : public CEESymbolProvider {
public:
    CEESymbolTable();
    CEESymbolTable(const CEESymbolTable&) = delete;
    CEESymbolTable& operator=(const CEESymbolTable&) = delete;
    virtual ~CEESymbolTable();

    /// Takes the symbol over.
    void AddSymbol(orv::String name, CEESymbol* symbol);
    CEESymbol* GetSymbol(orv::String& name) override;
    CEESymbol* GetFunction(orv::String& name) override;
    /// As `GetSymbol`, without a copy of the name.
    [[nodiscard]] CEESymbol* Find(std::string_view name) const;

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

/// A variable whose value is set from outside.
class TEMATICA_HOST_API CEESymbolConstVar final : public CEESymbol {
public:
    CEESymbolConstVar();
    ~CEESymbolConstVar() override;
    void SetElemValue(const orv::CPolyValue& value);
    /// Valid until another value is set.
    [[nodiscard]] const orv::CPolyValue& GetElemValue() const noexcept { return m_value; }
    bool Eval(int argumentCount, CEEResult* arguments, CEEResult& result) override;
    [[nodiscard]] bool IsFunction() const override { return false; }

private:
    orv::CPolyValue m_value;
};

/// Codes of the functions of a symbol table.
enum EEFunctionCode : int {
    EEFunctionDate = 30,
    EEFunctionNow = 31,
    EEFunctionYear = 32,
    EEFunctionMonth = 33,
    EEFunctionDay = 34,
};

/// Year (32), month (33) or day (34) of a date, in local time. Of no value: no value.
class TEMATICA_HOST_API CEESymbolFunDate final : public CEESymbol {
public:
    explicit CEESymbolFunDate(int code);
    ~CEESymbolFunDate() override;
    bool Eval(int argumentCount, CEEResult* arguments, CEEResult& result) override;
    [[nodiscard]] bool IsFunction() const override { return true; }
    [[nodiscard]] int GetCode() const { return m_code; }

private:
    int m_code;
};

/// Date(day, month, year) (30): local midnight of a real calendar day; Now (31): the moment of the
/// call.
class TEMATICA_HOST_API CEESymbolFunVarious final : public CEESymbol {
public:
    explicit CEESymbolFunVarious(int code);
    ~CEESymbolFunVarious() override;
    bool Eval(int argumentCount, CEEResult* arguments, CEEResult& result) override;
    [[nodiscard]] bool IsFunction() const override { return true; }
    [[nodiscard]] int GetCode() const { return m_code; }

private:
    int m_code;
};
