object F: TF
  object U: TUpdateSQL
  end
end
