// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "host/gis/LibGis.h"

#include "embedded/model/Theme.h"

namespace gis {

namespace {

template <typename Value>
Value read(const CFeatureClass* featureClass, Value CFeatureClass::*member)
{
    return featureClass ? featureClass->*member : Value {};
}

template <typename Value>
void write(CFeatureClass* featureClass, Value CFeatureClass::*member, const Value& value)
{
    if (featureClass)
        featureClass->*member = value;
}

} // namespace

int CLibGis::GetColor(CFeatureClass* featureClass)
{
    return read(featureClass, &CFeatureClass::colour);
}
void CLibGis::SetColor(CFeatureClass* featureClass, int colour)
{
    write(featureClass, &CFeatureClass::colour, colour);
}
int CLibGis::GetColorOutLine(CFeatureClass* featureClass)
{
    return read(featureClass, &CFeatureClass::colourOutLine);
}
void CLibGis::SetColorOutLine(CFeatureClass* featureClass, int colour)
{
    write(featureClass, &CFeatureClass::colourOutLine, colour);
}
int CLibGis::GetHatchType(CFeatureClass* featureClass)
{
    return read(featureClass, &CFeatureClass::hatchType);
}
void CLibGis::SetHatchType(CFeatureClass* featureClass, int hatchType)
{
    write(featureClass, &CFeatureClass::hatchType, hatchType);
}
int CLibGis::GetWidth(CFeatureClass* featureClass)
{
    return read(featureClass, &CFeatureClass::width);
}
void CLibGis::SetWidth(CFeatureClass* featureClass, int width)
{
    write(featureClass, &CFeatureClass::width, width);
}
int CLibGis::GetSymbol(CFeatureClass* featureClass)
{
    return read(featureClass, &CFeatureClass::symbol);
}
void CLibGis::SetSymbol(CFeatureClass* featureClass, int symbol)
{
    write(featureClass, &CFeatureClass::symbol, symbol);
}
double CLibGis::GetScala(CFeatureClass* featureClass)
{
    return read(featureClass, &CFeatureClass::scale);
}
void CLibGis::SetScala(CFeatureClass* featureClass, double scale)
{
    write(featureClass, &CFeatureClass::scale, scale);
}
double CLibGis::GetRotate(CFeatureClass* featureClass)
{
    return read(featureClass, &CFeatureClass::rotationRadians);
}
void CLibGis::SetRotate(CFeatureClass* featureClass, double rotationRadians)
{
    write(featureClass, &CFeatureClass::rotationRadians, rotationRadians);
}
orv::String CLibGis::GetLtypeName(CFeatureClass* featureClass)
{
    return read(featureClass, &CFeatureClass::ltypeName);
}
void CLibGis::SetLtypeName(CFeatureClass* featureClass, const orv::String& name)
{
    write(featureClass, &CFeatureClass::ltypeName, name);
}
orv::String CLibGis::GetLabel(CFeatureClass* featureClass)
{
    return read(featureClass, &CFeatureClass::label);
}
void CLibGis::SetLabel(CFeatureClass* featureClass, const orv::String& label)
{
    write(featureClass, &CFeatureClass::label, label);
}
void CLibGis::GetLimitValue(
    CFeatureClass* featureClass, orv::CPolyValue& low, orv::CPolyValue& high)
{
    low = read(featureClass, &CFeatureClass::low);
    high = read(featureClass, &CFeatureClass::high);
}
void CLibGis::SetLimitValue(
    CFeatureClass* featureClass, const orv::CPolyValue& low, const orv::CPolyValue& high)
{
    write(featureClass, &CFeatureClass::low, low);
    write(featureClass, &CFeatureClass::high, high);
}
bool CLibGis::IsDefaultFeatureClass(CFeatureClass* featureClass)
{
    return read(featureClass, &CFeatureClass::isDefault);
}

} // namespace gis
