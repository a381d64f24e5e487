unit a_;
var Q: TQuery;
end.
