// SPDX-License-Identifier: MIT
#include "host/client/RotationObject.h"

#include "comkit/Errors.h"

namespace ravlo
{

Variant OptionVariant(const std::optional<bool>& bOn) { return bOn ? Variant(*bOn) : Variant::Omitted(); }

RotationObject::RotationObject(Scheduler& cScheduler)
{
    void* pvObject = nullptr;
    ThrowIfFailed(CoCreateInstance(CLSID_clsRotation, nullptr, CLSCTX_INPROC_SERVER, __uuidof(_clsRotation),
                                   &pvObject));
    m_cRotation = ComPtr<_clsRotation>::Adopt(static_cast<_clsRotation*>(pvObject));
    Check(m_cRotation->putref_Scheduler(&cScheduler.Object()));
}

void RotationObject::Check(HRESULT hResult) const
{
    ThrowIfFailed(hResult, *m_cRotation.Get(), __uuidof(_clsRotation));
}

bool RotationObject::FairRotation() const
{
    VARIANT_BOOL bOn = VARIANT_FALSE;
    Check(m_cRotation->get_FairRotation(&bOn));
    return bOn != VARIANT_FALSE;
}

bool RotationObject::FeaturedArtists() const
{
    VARIANT_BOOL bOn = VARIANT_FALSE;
    Check(m_cRotation->get_FeaturedArtists(&bOn));
    return bOn != VARIANT_FALSE;
}

void RotationObject::Set(const RotationSwitches& rotation)
{
    if (rotation.bFair)
        Check(m_cRotation->put_FairRotation(BoolOf(*rotation.bFair)));
    if (rotation.bFeatured)
        Check(m_cRotation->put_FeaturedArtists(BoolOf(*rotation.bFeatured)));
}

void RotationObject::UseForThisRun(const RotationSwitches& rotation)
{
    Check(m_cRotation->OverrideOptions(OptionVariant(rotation.bFair), OptionVariant(rotation.bFeatured)));
}

} // namespace ravlo
