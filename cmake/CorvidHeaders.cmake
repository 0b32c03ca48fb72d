# CORVID_PUBLIC_HEADERS: what applications may include and what is installed, relative to the
# project's root. A header is here because an application needs it: to open a file, to read, make or
# change metadata, to define sets, to read, write and compare documents, to say what a file holds; or
# because such a header includes it. The other headers are the libraries' own affair. tests/consumer
# shows that these do without them.

set(CORVID_PUBLIC_HEADERS
  XMLBuilder/XML2Partition.h
  XMLBuilder/XMLBuilder.h)

function(corvid_public_headers folder)
  list(TRANSFORM ARGN PREPEND ${folder}/)
  list(APPEND CORVID_PUBLIC_HEADERS ${ARGN})
  set(CORVID_PUBLIC_HEADERS ${CORVID_PUBLIC_HEADERS} PARENT_SCOPE)
endfunction()

corvid_public_headers(editing
  DocumentMetadata.h MergedCopies.h RoundTrip.h WriteDocument.h)
corvid_public_headers(editing/apply
  CarryOut.h ClipEditor.h ClipHashes.h)
corvid_public_headers(editing/change
  Changes.h Modification.h)
corvid_public_headers(editing/compare
  Comparison.h Difference.h DifferenceKinds.def Differences.h)
corvid_public_headers(editing/supplement
  SupplementOutcome.h)
corvid_public_headers(editing/values
  ValueText.h)
corvid_public_headers(inspection
  Glossary.h RegisteredName.h StructuralLabels.h Summary.h)
corvid_public_headers(inspection/essence
  Contradiction.h Essence.h LabelName.h Picture.h Scheme.h Sound.h Stream.h Timecode.h Timing.h)
corvid_public_headers(host/base
  Attached.h ExceptionText.h Exceptions.h IdentifierText.h Platform.h Templates.h Text.h)
corvid_public_headers(host/dataio
  BufferedSink.h DataSink.h DataSource.h FileSink.h Memory.h MemorySource.h OpenSource.h
  RandomAccessSource.h ReadWindow.h Slice.h)
corvid_public_headers(host/dictionary
  AbstractMetaAttribute.h AbstractMetaAttributeVisitor.h AttributeFacts.h AttributeRequiredStatus.h
  Dictionary.h DictionaryText.h MetaAttribute.h MetaCollectionElement.h MetaDefinition.h MetaElement.h
  MetaMetadataSet.h MisplacedAttribute.h Register.h RegisterEntries.h RegisterTables.h Registers.h
  Tables.h UnknownAttribute.h)
corvid_public_headers(host/klv
  BerInput.h Key.h Triplet.h Value.h)
corvid_public_headers(host/metadata
  DarkMetadataSet.h DarkParsedGroup.h Element.h ElementItems.h Elements.h MetadataSet.h Names.h
  PartitionDictionary.h PartitionMetadata.h Properties.h Targets.h Visitors.h)
corvid_public_headers(host/mxf
  File.h HeaderMetadataReader.h HeaderMetadataWriter.h PartitionPack.h Partitions.h PrimerPack.h
  WarningKinds.def Warnings.h)
corvid_public_headers(host/mxf/rewrite
  Bytes.h Rewrite.h)
corvid_public_headers(host/mxf/rewrite/disk
  FileSystem.h InPlace.h NewFile.h SystemFiles.h)
corvid_public_headers(host/types
  ByteRuns.h Collections.h DataType.h Factories.h FixedBytes.h IdentifierBytes.h IdentifierTypes.h
  Identifiers.h Integers.h Jpeg2000.h RGBALayout.h Rational.h References.h Strings.h Timestamp.h
  Types.h UID.h ValueTypes.def Versions.h Visitors.h)
corvid_public_headers(host/xmlutils
  CleanDocument.h EncodingType.h ExceptionText.h FindNodes.h Initializer.h InvalidCharacters.h Layout.h
  Limits.h LoadDocument.h Serialise.h UnicodeString.h XercesForward.h)
