#pragma once
// The one in-memory PPD document: attributes, UI groups (with options and
// choices), paper sizes, constraints and IPP reasons, and its text.

#include <vector>

#include "model/IPPDAttribute.h"
#include "model/IPPDConstraint.h"
#include "model/IPPDGroup.h"
#include "model/IPPDLocalizer.h"
#include "model/IPPDObject.h"
#include "model/IPPDOption.h"
#include "model/IPPDPaperSize.h"

struct ppd_file_s;

namespace ppdforge {

class IPPD : public IPPDObject {
 public:
  IPPD* Clone() const override = 0;

  // Stores `attribute` (a copy when `copy`) after the others of its name;
  // returns the stored attribute (borrowed), or null.
  virtual IPPDAttribute* AddAttribute(IPPDAttribute* attribute, bool copy) = 0;
  // Makes and stores an attribute; the stored attribute (borrowed) or null.
  virtual IPPDAttribute* AddAttribute(const AQVString& name, const AQVString& value,
                                      const AQVString& spec, const AQVString& translation,
                                      PPDValueType type, const AQVString& comment) = 0;
  // Fills `out` (emptied first) with the attributes of `name` whose spec is
  // `*spec` (null spec: all of the name), in order; borrowed.
  virtual void GetAttributesWithNameAndSpec(const AQVString& name, const AQVString* spec,
                                            std::vector<IPPDAttribute*>& out) const = 0;
  // The value of the first such attribute, or empty.
  virtual AQVString GetAttributeValueWithNameAndSpec(const AQVString& name,
                                                     const AQVString* spec) const = 0;
  // Detaches and releases every such attribute; the name keeps its place in the order.
  virtual void RemoveAttributesWithNameAndSpec(const AQVString& name, const AQVString* spec) = 0;

  virtual const std::vector<IPPDConstraint*>& GetConstraints() const = 0;
  // Stores the constraint unless an equal one is present, which is returned
  // instead (borrowed); null for null or a failed copy.
  virtual IPPDConstraint* AddConstraint(IPPDConstraint* constraint, bool copy) = 0;
  virtual void RemoveConstraint(IPPDConstraint* constraint) = 0;
  // Removes every constraint whose side 0 option, or else side 1 option, is `option`.
  virtual void RemoveConstraintsForOption(const AQVString& option) = 0;
  // Fills `out` (emptied first) with the constraints whose side 0, or else
  // side 1, names exactly `option` and `choice`; borrowed.
  virtual void GetConstraintsWithOptionAndChoice(const AQVString& option, const AQVString& choice,
                                                 std::vector<IPPDConstraint*>& out) const = 0;

  virtual const std::vector<IPPDPaperSize*>& GetPaperSizes() const = 0;
  // Stores the paper size, replacing one with the same ID (the new one goes
  // to the end); returns it (borrowed) or null.
  virtual IPPDPaperSize* AddPaperSize(IPPDPaperSize* paperSize, bool copy) = 0;
  virtual void RemovePaperSize(IPPDPaperSize* paperSize) = 0;
  virtual void RemovePaperSizeWithID(const AQVString& id) = 0;
  virtual IPPDPaperSize* GetPaperSizeWithID(const AQVString& id) const = 0;

  virtual const std::vector<IPPDGroup*>& GetGroups() const = 0;
  // As AddPaperSize, for groups.
  virtual IPPDGroup* AddGroup(IPPDGroup* group, bool copy) = 0;
  virtual void RemoveGroup(IPPDGroup* group) = 0;
  virtual void RemoveGroupWithID(const AQVString& id) = 0;
  virtual IPPDGroup* GetGroupWithID(const AQVString& id) const = 0;
  // The first option with this ID in any group, in group order (borrowed), or null.
  virtual IPPDOption* GetOptionWithID(const AQVString& id) const = 0;

  // The localizer (borrowed), or null.
  virtual IPPDLocalizer* GetLocalizer() const = 0;
  // Takes a reference on the new localizer before releasing the old one.
  virtual void SetLocalizer(IPPDLocalizer* localizer) = 0;
  // The value of "LanguageVersion" (any spec), e.g. "English"; empty when absent.
  virtual AQVString GetMainLanguage() const = 0;
  // The entries of "cupsLanguages" (locale identifiers), in order.
  virtual void GetAdditionalLanguages(std::vector<AQVString>& out) const = 0;

  // Lets GetStringRepresentation write the groups on up to `count` threads
  // (0 and 1: the calling thread alone, the default). The text is the same;
  // the localizer's tables must not be changed while it runs.
  virtual void SetRenderThreads(unsigned count) = 0;

  virtual bool operator==(const IPPD& other) const = 0;
  virtual bool operator!=(const IPPD& other) const = 0;

  // A new empty document (count 1, owned by the caller), or null.
  static IPPD* Create();
  // The normalised document of a PPD file that libcups has parsed (count 1,
  // owned by the caller); null for a null file or text that cannot be
  // decoded (APPDReader::Create reports why).
  static IPPD* Create(const ppd_file_s* file);
  // The normalised document of the PPD file at `path` (UTF-8; plain or
  // gzip-compressed), read with libcups (count 1, owned by the caller); null
  // when it cannot be read (APPDReader::Read reports why).
  static IPPD* Create(const AQVString& path);
};

}  // namespace ppdforge
