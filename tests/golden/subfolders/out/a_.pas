unit a_;
var Q: TKVAQuery;
end.
