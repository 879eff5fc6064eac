#pragma once
// A document stand-in for attribute and IPP reason tests: it reports the
// languages and localizer it is given and holds nothing else.

#include <vector>

#include "core/ASharedObject.h"
#include "model/IPPD.h"

namespace ppdforge::testing {

class AttributeTestDocument : public IPPD {
 public:
  AttributeTestDocument(const AQVString& mainLanguage, std::vector<AQVString> languages,
                        IPPDLocalizer* localizer)
      : mainLanguage_(mainLanguage), languages_(std::move(languages)), localizer_(localizer) {
    if (localizer_ != nullptr) localizer_->Retain();
  }
  ~AttributeTestDocument() override { ReleaseObject(localizer_); }

  static AttributeTestDocument* Create(const AQVString& mainLanguage,
                                       std::vector<AQVString> languages,
                                       IPPDLocalizer* localizer = nullptr) {
    return CreateSharedObject<AttributeTestDocument>(mainLanguage, std::move(languages), localizer);
  }

  IPPD* Clone() const override { return nullptr; }
  APPDCommentable* QueryPPDCommentable() const override { return nullptr; }
  APPDLocalizable* QueryPPDLocalizable() const override { return nullptr; }
  AQVString GetStringRepresentation(AError*) const override { return AQVString(); }

  IPPDAttribute* AddAttribute(IPPDAttribute*, bool) override { return nullptr; }
  IPPDAttribute* AddAttribute(const AQVString&, const AQVString&, const AQVString&,
                              const AQVString&, PPDValueType, const AQVString&) override {
    return nullptr;
  }
  void GetAttributesWithNameAndSpec(const AQVString&, const AQVString*,
                                    std::vector<IPPDAttribute*>& out) const override {
    out.clear();
  }
  AQVString GetAttributeValueWithNameAndSpec(const AQVString&, const AQVString*) const override {
    return AQVString();
  }
  void RemoveAttributesWithNameAndSpec(const AQVString&, const AQVString*) override {}
  const std::vector<IPPDConstraint*>& GetConstraints() const override { return constraints_; }
  IPPDConstraint* AddConstraint(IPPDConstraint*, bool) override { return nullptr; }
  void RemoveConstraint(IPPDConstraint*) override {}
  void RemoveConstraintsForOption(const AQVString&) override {}
  void GetConstraintsWithOptionAndChoice(const AQVString&, const AQVString&,
                                         std::vector<IPPDConstraint*>& out) const override {
    out.clear();
  }
  const std::vector<IPPDPaperSize*>& GetPaperSizes() const override { return paperSizes_; }
  IPPDPaperSize* AddPaperSize(IPPDPaperSize*, bool) override { return nullptr; }
  void RemovePaperSize(IPPDPaperSize*) override {}
  void RemovePaperSizeWithID(const AQVString&) override {}
  IPPDPaperSize* GetPaperSizeWithID(const AQVString&) const override { return nullptr; }
  const std::vector<IPPDGroup*>& GetGroups() const override { return groups_; }
  IPPDGroup* AddGroup(IPPDGroup*, bool) override { return nullptr; }
  void RemoveGroup(IPPDGroup*) override {}
  void RemoveGroupWithID(const AQVString&) override {}
  IPPDGroup* GetGroupWithID(const AQVString&) const override { return nullptr; }
  IPPDOption* GetOptionWithID(const AQVString&) const override { return nullptr; }

  IPPDLocalizer* GetLocalizer() const override { return localizer_; }
  void SetLocalizer(IPPDLocalizer* localizer) override {
    if (localizer != nullptr) localizer->Retain();
    ReleaseObject(localizer_);
    localizer_ = localizer;
  }
  AQVString GetMainLanguage() const override { return mainLanguage_; }
  void GetAdditionalLanguages(std::vector<AQVString>& out) const override { out = languages_; }

  bool operator==(const IPPD& other) const override { return this == &other; }
  bool operator!=(const IPPD& other) const override { return this != &other; }

 private:
  AQVString mainLanguage_;
  std::vector<AQVString> languages_;
  IPPDLocalizer* localizer_;
  std::vector<IPPDConstraint*> constraints_;
  std::vector<IPPDPaperSize*> paperSizes_;
  std::vector<IPPDGroup*> groups_;
};

}  // namespace ppdforge::testing
